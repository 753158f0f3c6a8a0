#include "check/check_rows.h"

#include <gtest/gtest.h>

#include <functional>

#include "app/patience.h"
#include "app/settings.h"
#include "support/fake_inspector.h"

namespace orvane::test {
namespace {

TEST(PatienceTest, LeavesTheSystemItsShareOfTheDelay) {
  const std::pair<int, int> cases[] = {{0, 15}, {1, 31}, {10, 31}, {-3, 15}, {32767, 31}};
  for (const auto& [delay, patience] : cases) {
    EXPECT_EQ(PatienceFor(delay).count(), patience) << delay;
  }
}

// A computer on which all is well.
struct Computer {
  Computer() { ParseSettings("0,5,0,1,0,2,30,3,2,0,\"\",0", state); }

  std::vector<CheckRow> Rows() const {
    return JudgeProtection(state, now, line, file, outside, last);
  }

  State state;
  LocalTime now{2026, 11, 23, 9, 5, 33};
  LineFindings line{LineFindings::Port::kOpen, "Port 1 (/dev/ttyS0)", LineFindings::Ups::kAnswers,
                    "OV-1000"};
  SettingsFile file = SettingsFile::kWhole;
  OutsideFindings outside = WellFound();
  LastStep last;
};

TEST(CheckRowsTest, AllIsGreenOnAComputerThatIsReady) {
  Computer computer;
  for (const auto language : {Language::kEnglish, Language::kChinese}) {
    computer.state.language = language;
    const auto rows = computer.Rows();
    ASSERT_EQ(rows.size(), kCheckPoints);
    for (const CheckRow& row : rows) {
      EXPECT_EQ(row.grade, Grade::kReady) << row.finding;
      EXPECT_FALSE(row.name.empty());
      EXPECT_TRUE(row.remedy.empty()) << row.remedy;
    }
    EXPECT_EQ(OpenPoints(rows), 0);
  }
}

struct Case {
  CheckPoint point;
  Grade grade;
  std::function<void(Computer&)> spoil;
  const char* finding;
};

void EnterDate(State& state, std::size_t slot, std::size_t date_slot, const char* date) {
  state.ScheduleEnable[slot] = '1';
  state.ScheduleDate[date_slot] = date;
}

const std::vector<Case>& Cases() {
  using enum CheckPoint;
  constexpr Grade kAmber = Grade::kAttention;
  constexpr Grade kWrong = Grade::kNotReady;
  const auto delay = [](int minutes, int way_down) {
    return [=](Computer& c) {
      c.state.Settings[kShutdownDelay] = static_cast<std::int16_t>(minutes);
      c.outside.way_down.reset();
      if (way_down > 0) c.outside.way_down = std::chrono::seconds(way_down);
    };
  };
  static const std::vector<Case> cases = {
      {kPort, kAmber, [](Computer& c) { c.line.port = LineFindings::Port::kSearching; },
       "No UPS found yet; Port 1 (/dev/ttyS0) is being tried."},
      {kPort, kWrong, [](Computer& c) { c.line.port = LineFindings::Port::kMissing; },
       "No port could be opened."},
      {kUps, kAmber, [](Computer& c) { c.line.ups = LineFindings::Ups::kNotYet; },
       "The UPS has not answered yet."},
      {kUps, kWrong, [](Computer& c) { c.line.ups = LineFindings::Ups::kSilent; },
       "The UPS does not answer; a mains failure would not be noticed."},
      {kDelays, kWrong, [](Computer& c) { c.state.Settings[kMainsMinutes] = 0; },
       "A delay is zero: the computer would go down within seconds."},
      {kDelays, kWrong, [](Computer& c) { c.state.Settings[kLowMinutes] = 0; },
       "A delay is zero: the computer would go down within seconds."},
      // One minute, 31 s of it for saving.
      {kDelays, kAmber, delay(1, 0),
       "The UPS waits 60 s: up to 31 s for saving, only 29 s for the system."},
      {kDelays, kAmber, delay(2, 0),
       "The UPS waits 120 s: up to 31 s for saving, only 89 s for the system."},
      {kDelays, Grade::kReady, delay(3, 0),
       "The UPS waits 180 s: up to 31 s for saving, 149 s for the system."},
      {kDelays, Grade::kReady, delay(1, 19),
       "The UPS waits 60 s; saving takes up to 31 s, the system took 19 s."},
      {kDelays, kAmber, delay(1, 20),
       "The UPS waits 60 s; saving takes up to 31 s, the system took 20 s."},
      {kDelays, kAmber, delay(1, 28),
       "The UPS waits 60 s; saving takes up to 31 s, the system took 28 s."},
      {kDelays, kWrong, delay(1, 29),
       "The UPS waits 60 s; saving takes up to 31 s, the system took 29 s."},
      {kRight, kAmber, [](Computer& c) { c.outside.rights.reset(); }, "Being asked."},
      {kRight, kAmber,
       [](Computer& c) {
         c.outside.rights = {Right::kPassword, Right::kYes};
       },
       "Halt: only with a password. PowerOff is allowed and is used instead."},
      {kRight, kWrong,
       [](Computer& c) {
         c.outside.rights = {Right::kNo, Right::kNoAnswer};
       },
       "The computer would stay up. Halt: refused; PowerOff: logind does not answer."},
      {kRight, kWrong,
       [](Computer& c) {
         c.outside.rights = {Right::kBlocked, Right::kImpossible};
         std::swap(c.last.wanted, c.last.other);
       },
       "The computer would stay up. PowerOff: blocked by another program; Halt: not possible on "
       "this computer."},
      {kBlockers, kAmber, [](Computer& c) { c.outside.blockers.reset(); }, "Being asked."},
      {kBlockers, kAmber, [](Computer& c) { c.outside.blockers_unknown = true; },
       "Not known: logind does not answer."},
      {kBlockers, kAmber, [](Computer& c) { c.outside.blockers = "apt (upgrade, process 7)"; },
       "A shutdown is blocked, but goes ahead: apt (upgrade, process 7)."},
      {kBlockers, kWrong,
       [](Computer& c) {
         c.outside.blockers = "apt (upgrade, process 7)";
         c.outside.rights = {Right::kBlocked, Right::kBlocked};
       },
       "A shutdown is blocked by apt (upgrade, process 7)."},
      {kCompanion, kAmber, [](Computer& c) { c.outside.companion->version = "2.9.0"; },
       "The companion has version \"2.9.0\", this program " ORVANE_VERSION "."},
      {kCompanion, kAmber, [](Computer& c) { c.outside.companion.reset(); }, "Being asked."},
      {kCompanion, kWrong,
       [](Computer& c) {
         c.outside.companion = CompanionFound{false, "", "No such file"};
       },
       "No work would be saved: the companion does not run (No such file)."},
      {kFiles, kAmber, [](Computer& c) { c.outside.free_bytes = 9'999'999; },
       "Only 9 MB are left for log and records."},
      {kFiles, kWrong,
       [](Computer& c) {
         c.outside.unwritable = {"/p", "/p/System.log"};
       },
       "Cannot be written: /p, /p/System.log."},
      {kOthers, kAmber,
       [](Computer& c) {
         c.outside.others->acting = {"upsmon", "UPower"};
       },
       "May take the computer down by a UPS, too: upsmon, UPower."},
      {kOthers, kAmber, [](Computer& c) { c.outside.others.reset(); }, "Being asked."},
      {kOthers, kWrong, [](Computer& c) { c.outside.others->on_port = {"nutdrv_qx"}; },
       "Polls UPSes by itself: nutdrv_qx."},
      {kAutostart, kAmber, [](Computer& c) { c.outside.autostart = Autostart::kOff; },
       "Orvane does not start with the desktop."},
      {kAutostart, kWrong,
       [](Computer& c) {
         c.outside.autostart = Autostart::kBroken;
         c.outside.autostart_program = "/gone/orvane";
       },
       "What starts with the desktop is not there: /gone/orvane."},
      {kClock, kAmber, [](Computer& c) { EnterDate(c.state, 9, 2, "2026-11-22"); },
       "Special days that have passed: 2026-11-22."},
      {kClock, kAmber, [](Computer& c) { EnterDate(c.state, 21, 14, "2025/1/2"); },
       "Self-tests whose day has passed: 2025-01-02."},
      {kClock, Grade::kReady, [](Computer& c) { EnterDate(c.state, 9, 2, "2026-11-23"); },
       "Date and time are set, and no schedule has passed."},
      {kClock, kWrong, [](Computer& c) { c.now.year = 2001; }, "The clock shows the year 2001."},
      {kLastStep, kAmber, [](Computer& c) { c.last.unknown_action = "Sleep"; },
       "platform.ini names no known action (Sleep); it counts as Halt."},
      {kLastStep, kWrong, [](Computer& c) { c.last.none = true; },
       "A trial is set: Action=None leaves the computer running."},
      {kSettings, kAmber, [](Computer& c) { c.file = SettingsFile::kCutShort; },
       "The settings file is damaged: from some place on its values do not count."},
      {kSettings, kWrong, [](Computer& c) { c.file = SettingsFile::kMissing; },
       "There is no settings file; every delay is zero."},
  };
  return cases;
}

TEST(CheckRowsTest, EachPointIsJudgedByWhatWasFound) {
  for (const Case& row : Cases()) {
    Computer computer;
    row.spoil(computer);
    const auto rows = computer.Rows();
    const CheckRow& found = rows.at(static_cast<std::size_t>(row.point));
    EXPECT_EQ(found.point, row.point);
    EXPECT_EQ(found.finding, row.finding);
    EXPECT_EQ(found.grade, row.grade) << row.finding;
    const bool asked = found.finding == "Being asked.";
    EXPECT_EQ(found.remedy.empty(), asked || row.grade == Grade::kReady) << row.finding;
    EXPECT_EQ(WorstGrade(rows), row.grade) << row.finding;
  }
}

TEST(CheckRowsTest, RowsOfASessionTakeTheirPlaces) {
  Computer computer;
  const auto all = computer.Rows();
  computer.outside.in_session = false;
  auto rows = computer.Rows();
  EXPECT_EQ(rows.size(), kCheckPoints - 3);
  for (int i = 0; i < 2; ++i) rows = WithSession(rows, JudgeSession(computer.state, WellFound()));
  EXPECT_EQ(rows, all);
}

TEST(CheckRowsTest, SummaryCountsThePoints) {
  Computer computer;
  computer.outside.autostart = Autostart::kOff;
  EXPECT_EQ(CheckSummary(computer.state, Grade::kAttention, OpenPoints(computer.Rows())),
            "1 point needs attention");
  computer.file = SettingsFile::kMissing;
  EXPECT_EQ(CheckSummary(computer.state, WorstGrade(computer.Rows()), OpenPoints(computer.Rows())),
            "Not ready: 2 points");
}

}  // namespace
}  // namespace orvane::test
