#include "check/check_rows.h"

#include <algorithm>
#include <initializer_list>
#include <iterator>
#include <set>
#include <string_view>
#include <utility>

#include "app/calendar.h"
#include "app/patience.h"
#include "app/settings.h"
#include "schedule/due_texts.h"
#include "schedule/schedule_tables.h"

namespace orvane {
namespace {

using std::chrono::seconds;

// The system's own way down, where it has not been measured: as long as systemd gives a service.
constexpr seconds kUsualWayDown{90};
// Less room than this between way down and the end of the power is little.
constexpr seconds kLittleRoom{10};
// No computer that this program was made for shows an earlier year, unless its clock is not set.
constexpr int kFirstYear = 2026;
constexpr std::uint64_t kLittleSpace = 10'000'000;

std::string Text(seconds time) {
  return std::to_string(time.count());
}

std::string List(const std::vector<std::string>& names) {
  std::string list;
  for (const std::string& name : names) list += (list.empty() ? "" : ", ") + name;
  return list;
}

constexpr Message kNames[] = {
    Message::kCheckPort,  Message::kCheckUps,      Message::kCheckDelays,
    Message::kCheckRight, Message::kCheckBlockers, Message::kCheckCompanion,
    Message::kCheckFiles, Message::kCheckOthers,   Message::kCheckAutostart,
    Message::kCheckClock, Message::kCheckLastStep, Message::kCheckSettings};
static_assert(std::size(kNames) == kCheckPoints);

constexpr Message kRights[] = {
    Message::kRightYes,     Message::kRightPassword,           Message::kRightImpossible,
    Message::kRightBlocked, Message::kRightBlockedAndPassword, Message::kRightNo,
    Message::kRightNoAnswer};

// A finding in the language of `state`, and the remedy with it.
class Judge {
 public:
  explicit Judge(const State& state) : state_(state) {}

  CheckRow Green(Message finding, std::initializer_list<std::string_view> parts = {}) const {
    return {{}, Grade::kReady, "", Fill(state_.Text(finding), parts), "", CheckAction::kNone};
  }

  CheckRow Amber(Message finding, std::initializer_list<std::string_view> parts, Message remedy,
                 CheckAction action = CheckAction::kNone) const {
    return {{},
            Grade::kAttention,
            "",
            Fill(state_.Text(finding), parts),
            std::string(state_.Text(remedy)),
            action};
  }

  CheckRow Red(Message finding, std::initializer_list<std::string_view> parts, Message remedy,
               CheckAction action = CheckAction::kNone) const {
    CheckRow row = Amber(finding, parts, remedy, action);
    row.grade = Grade::kNotReady;
    return row;
  }

  // The answer is not there yet.
  CheckRow Asked() const {
    return {{}, Grade::kAttention, "", std::string(state_.Text(Message::kCheckAsked)),
            "", CheckAction::kNone};
  }

 private:
  const State& state_;
};

CheckRow JudgePort(const Judge& judge, const LineFindings& line) {
  switch (line.port) {
    case LineFindings::Port::kOpen:
      return judge.Green(Message::kPortOpen, {line.port_name});
    case LineFindings::Port::kLeftAlone:
      return judge.Green(Message::kPortLeft);
    case LineFindings::Port::kSearching:
      return judge.Amber(Message::kPortSearched, {line.port_name}, Message::kChoosePort,
                         CheckAction::kOpenSettings);
    case LineFindings::Port::kMissing:
      break;
  }
  return judge.Red(Message::kPortMissing, {}, Message::kOpenPortHow, CheckAction::kOpenSettings);
}

CheckRow JudgeUps(const Judge& judge, const LineFindings& line) {
  switch (line.ups) {
    case LineFindings::Ups::kAnswers:
      if (line.model.empty()) return judge.Green(Message::kUpsAnswers);
      return judge.Green(Message::kUpsAnswersAs, {line.model});
    case LineFindings::Ups::kNotYet:
      return judge.Amber(Message::kUpsNotYet, {}, Message::kWaitForUps);
    case LineFindings::Ups::kSilent:
      break;
  }
  const bool watched = line.port == LineFindings::Port::kLeftAlone;
  return judge.Red(watched ? Message::kUpsUnrecorded : Message::kUpsSilent, {},
                   Message::kLookAtCable);
}

CheckRow JudgeDelays(const Judge& judge, const State& state, std::optional<seconds> way_down) {
  if (MainsFailureDelay(state) <= 0 || BatteryLowDelay(state) <= 0) {
    return judge.Red(Message::kDelayZero, {}, Message::kSetDelays, CheckAction::kOpenSettings);
  }
  const int slot = state.Settings[kShutdownDelay];
  const seconds delay = UpsDelay(slot);
  const seconds patience = PatienceFor(slot);
  if (!way_down) {
    const seconds room = delay - patience;
    if (room >= kUsualWayDown) {
      return judge.Green(Message::kDelayRoomy, {Text(delay), Text(patience), Text(room)});
    }
    return judge.Amber(Message::kDelayUnmeasured, {Text(delay), Text(patience), Text(room)},
                       Message::kChooseLonger, CheckAction::kOpenSettings);
  }
  const seconds room = delay - patience - *way_down;
  const std::string parts[] = {Text(delay), Text(patience), Text(*way_down)};
  if (room <= seconds(0)) {
    return judge.Red(Message::kDelayMeasured, {parts[0], parts[1], parts[2]},
                     Message::kChooseLonger, CheckAction::kOpenSettings);
  }
  if (room < kLittleRoom) {
    return judge.Amber(Message::kDelayMeasured, {parts[0], parts[1], parts[2]},
                       Message::kChooseLonger, CheckAction::kOpenSettings);
  }
  return judge.Green(Message::kDelayMeasured, {parts[0], parts[1], parts[2]});
}

CheckRow JudgeRight(const Judge& judge, const State& state, const OutsideFindings& outside,
                    const LastStep& last) {
  if (!outside.rights) return judge.Asked();
  const auto in_words = [&](Right right) {
    return state.Text(kRights[static_cast<std::size_t>(right)]);
  };
  const RightsFound& rights = *outside.rights;
  if (rights.wanted == Right::kYes) return judge.Green(Message::kRightGiven, {last.wanted});
  if (rights.other == Right::kYes) {
    return judge.Amber(Message::kRightOther, {last.wanted, in_words(rights.wanted), last.other},
                       Message::kTakeRight);
  }
  return judge.Red(Message::kRightRefused,
                   {last.wanted, in_words(rights.wanted), last.other, in_words(rights.other)},
                   Message::kTakeRight);
}

CheckRow JudgeBlockers(const Judge& judge, const OutsideFindings& outside) {
  if (outside.blockers_unknown) {
    return judge.Amber(Message::kBlockersUnknown, {}, Message::kAskLater);
  }
  if (!outside.blockers) return judge.Asked();
  if (outside.blockers->empty()) return judge.Green(Message::kNoBlockers);
  const bool overridden = outside.rights && (outside.rights->wanted == Right::kYes ||
                                             outside.rights->other == Right::kYes);
  if (overridden) {
    return judge.Amber(Message::kBlockersOverridden, {*outside.blockers}, Message::kCloseBlockers);
  }
  return judge.Red(Message::kBlockers, {*outside.blockers}, Message::kCloseBlockers);
}

CheckRow JudgeCompanion(const Judge& judge, const OutsideFindings& outside) {
  if (!outside.companion) return judge.Asked();
  const CompanionFound& companion = *outside.companion;
  if (!companion.runs) {
    return judge.Red(Message::kCompanionFails, {companion.reason}, Message::kInstallCompanion);
  }
  if (companion.version != ORVANE_VERSION) {
    return judge.Amber(Message::kCompanionOther, {companion.version, ORVANE_VERSION},
                       Message::kInstallCompanion);
  }
  return judge.Green(Message::kCompanionRuns, {companion.version});
}

CheckRow JudgeFiles(const Judge& judge, const OutsideFindings& outside) {
  if (!outside.unwritable.empty()) {
    return judge.Red(Message::kFilesRefused, {List(outside.unwritable)}, Message::kMakeWritable);
  }
  if (outside.free_bytes < kLittleSpace) {
    return judge.Amber(Message::kFilesTight, {std::to_string(outside.free_bytes / 1'000'000)},
                       Message::kMakeSpace);
  }
  return judge.Green(Message::kFilesWritable);
}

CheckRow JudgeOthers(const Judge& judge, const OutsideFindings& outside) {
  if (!outside.others) return judge.Asked();
  if (!outside.others->on_port.empty()) {
    return judge.Red(Message::kOthersOnPort, {List(outside.others->on_port)}, Message::kEndOthers);
  }
  if (!outside.others->acting.empty()) {
    return judge.Amber(Message::kOthersAct, {List(outside.others->acting)}, Message::kLeaveToOne);
  }
  return judge.Green(Message::kNoOthers);
}

CheckRow JudgeAutostart(const Judge& judge, const OutsideFindings& outside) {
  CheckRow row = judge.Green(Message::kStarts);
  if (outside.autostart == Autostart::kOff) {
    row = judge.Amber(Message::kDoesNotStart, {}, Message::kTickAutostart);
  } else if (outside.autostart == Autostart::kBroken) {
    row = judge.Red(Message::kStartsNothing, {outside.autostart_program}, Message::kTickAutostart);
  }
  row.action = CheckAction::kAutostart;
  return row;
}

// The dates of a section that have passed and stand for something, each once.
std::vector<std::string> PastDates(const State& state, const ScheduleSection& section,
                                   const LocalTime& now) {
  const std::string today = DateText(now);
  std::set<std::string> past;
  for (std::size_t n = 1; n <= kScheduleEntries; ++n) {
    if (state.ScheduleEnable[n + section.on_slots] != '1') continue;
    const auto date = ReadDate(state.ScheduleDate[n + *section.date_slots]);
    if (date && *date < today) past.insert(*date);
  }
  return {past.begin(), past.end()};
}

CheckRow JudgeClock(const Judge& judge, const State& state, const LocalTime& now) {
  if (now.year < kFirstYear) {
    return judge.Red(Message::kClockUnset, {std::to_string(now.year)}, Message::kSetClock);
  }
  std::vector<std::string> past = PastDates(state, kSpecialDays, now);
  if (!past.empty()) {
    return judge.Amber(Message::kDatesPast, {List(past)}, Message::kRenewDates,
                       CheckAction::kOpenSpecialDays);
  }
  past = PastDates(state, kSelfTests, now);
  if (!past.empty()) {
    return judge.Amber(Message::kTestsPast, {List(past)}, Message::kRenewDates,
                       CheckAction::kOpenSelfTests);
  }
  return judge.Green(Message::kClockSet);
}

CheckRow JudgeLastStep(const Judge& judge, const LastStep& last) {
  if (last.none) return judge.Red(Message::kActionNone, {}, Message::kRemoveAction);
  if (!last.unknown_action.empty()) {
    return judge.Amber(Message::kActionUnknown, {last.unknown_action, last.wanted},
                       Message::kMendAction);
  }
  return judge.Green(Message::kActionGood, {last.wanted});
}

CheckRow JudgeSettings(const Judge& judge, SettingsFile file) {
  switch (file) {
    case SettingsFile::kWhole:
      return judge.Green(Message::kSettingsWhole);
    case SettingsFile::kCutShort:
      return judge.Amber(Message::kSettingsCutShort, {}, Message::kSaveSettings,
                         CheckAction::kOpenSettings);
    case SettingsFile::kMissing:
      break;
  }
  return judge.Red(Message::kSettingsMissing, {}, Message::kSaveSettings,
                   CheckAction::kOpenSettings);
}

CheckRow Named(const State& state, CheckPoint point, CheckRow row) {
  row.point = point;
  row.name = NameOf(state, point);
  return row;
}

}  // namespace

std::vector<CheckRow> JudgeProtection(const State& state, const LocalTime& now,
                                      const LineFindings& line, SettingsFile file,
                                      const OutsideFindings& outside, const LastStep& last) {
  const Judge judge(state);
  std::vector<CheckRow> rows = {
      Named(state, CheckPoint::kPort, JudgePort(judge, line)),
      Named(state, CheckPoint::kUps, JudgeUps(judge, line)),
      Named(state, CheckPoint::kDelays, JudgeDelays(judge, state, outside.way_down)),
      Named(state, CheckPoint::kRight, JudgeRight(judge, state, outside, last)),
      Named(state, CheckPoint::kBlockers, JudgeBlockers(judge, outside)),
      Named(state, CheckPoint::kFiles, JudgeFiles(judge, outside)),
      Named(state, CheckPoint::kClock, JudgeClock(judge, state, now)),
      Named(state, CheckPoint::kLastStep, JudgeLastStep(judge, last)),
      Named(state, CheckPoint::kSettings, JudgeSettings(judge, file))};
  return outside.in_session ? WithSession(std::move(rows), JudgeSession(state, outside)) : rows;
}

std::vector<CheckRow> JudgeSession(const State& state, const OutsideFindings& outside) {
  const Judge judge(state);
  return {Named(state, CheckPoint::kCompanion, JudgeCompanion(judge, outside)),
          Named(state, CheckPoint::kOthers, JudgeOthers(judge, outside)),
          Named(state, CheckPoint::kAutostart, JudgeAutostart(judge, outside))};
}

std::vector<CheckRow> WithSession(std::vector<CheckRow> rows, std::vector<CheckRow> session) {
  std::move(rows.begin(), rows.end(), std::back_inserter(session));
  const auto point = [](const CheckRow& row) { return row.point; };
  std::ranges::stable_sort(session, {}, point);
  const auto same = [](const CheckRow& a, const CheckRow& b) { return a.point == b.point; };
  session.erase(std::unique(session.begin(), session.end(), same), session.end());
  return session;
}

std::string_view NameOf(const State& state, CheckPoint point) {
  return state.Text(kNames[static_cast<std::size_t>(point)]);
}

CheckRow ServiceMissing(const State& state) {
  return Named(state, CheckPoint::kPort,
               Judge(state).Red(Message::kProtectionOff, {}, Message::kStartService));
}

std::string PortName(const State& state, int number, const std::string& device) {
  std::string name = Fill(state.Text(Message::kPortName), {std::to_string(number)});
  if (!device.empty()) name += " (" + device + ')';
  return name;
}

Grade WorstGrade(const std::vector<CheckRow>& rows) {
  Grade worst = Grade::kReady;
  for (const CheckRow& row : rows) worst = std::max(worst, row.grade);
  return worst;
}

int OpenPoints(const std::vector<CheckRow>& rows) {
  return static_cast<int>(std::count_if(
      rows.begin(), rows.end(), [](const CheckRow& row) { return row.grade != Grade::kReady; }));
}

std::string CheckSummary(const State& state, Grade grade, int points) {
  if (grade == Grade::kReady) return std::string(state.Text(Message::kCheckReady));
  const bool red = grade == Grade::kNotReady;
  const Message text = points == 1 ? (red ? Message::kCheckRedPoint : Message::kCheckAmberPoint)
                                   : (red ? Message::kCheckRedPoints : Message::kCheckAmberPoints);
  return Fill(state.Text(text), {std::to_string(points)});
}

}  // namespace orvane
