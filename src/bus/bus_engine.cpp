#include "bus/bus_engine.h"

#include <fcntl.h>
#include <systemd/sd-bus.h>

#include <algorithm>
#include <utility>

#include "app/captions.h"
#include "app/settings.h"
#include "bus/history_rows.h"
#include "bus/interface.h"
#include "bus/names.h"
#include "platform/linux/file.h"

namespace orvane {
namespace {

constexpr std::chrono::seconds kPatience{2};
constexpr std::chrono::milliseconds kCompanionLimit{40000};

constexpr std::string_view kTitle = "Orvane";
constexpr const char* kAccessDenied = "org.freedesktop.DBus.Error.AccessDenied";

}  // namespace

BusEngine::BusEngine(BusConnection& connection, const Seams& seams, Post post)
    : Engine(seams.forms),
      connection_(connection),
      seams_(seams),
      post_([this, post = std::move(post)](std::function<void()> work) {
        post([alive = std::weak_ptr<char>(alive_), work = std::move(work)] {
          if (!alive.expired()) work();
        });
      }),
      alert_(state_, panel_, seams),
      readers_(ReadersOf(panel_)) {
  readers_["settings"] = [this](sd_bus_message* message) {
    const Language before = state_.language;
    const int result = TakeSettings(message, state_);
    if (state_.language != before && OnRights) OnRights();
    return result;
  };
  // The shield of a window counts the points of its session as well.
  readers_.erase("shield");
  readers_["check"] = [this](sd_bus_message* message) {
    const int result = TakeRows(message, state_, check_.told);
    check_.Judge();
    return result;
  };
  readers_["countdown"] = [this](sd_bus_message* message) {
    const int result = sd_bus_message_read(message, "i", &state_.ShutdownCountdown);
    if (alert_.Showing()) alert_.seconds.Caption(std::to_string(state_.ShutdownCountdown));
    return result;
  };
}

void BusEngine::Start() {
  started_ = true;
  Lose();
  Keep();
}

void BusEngine::Stop() {
  if (!std::exchange(started_, false)) return;
  alive_ = std::make_shared<char>();
  seams_.alert_timer.Enabled(false);
  if (bus_ && bus_->Descriptor() >= 0) bus_->Send(kSee, "Detach");
}

void BusEngine::Keep() {
  if (!started_ || (bus_ && bus_->Descriptor() >= 0)) return;
  if (bus_) Lose();
  std::string error;
  bus_ = connection_.Get(error);
  if (!bus_) return;
  Listen(*bus_);
  AttachNow();
}

void BusEngine::Listen(Bus& bus) {
  bus.Match(kServiceOwnerRule, [this](sd_bus_message* signal) {
    const char *name = nullptr, *old_owner = nullptr, *new_owner = nullptr;
    if (sd_bus_message_read(signal, "sss", &name, &old_owner, &new_owner) <= 0) return;
    if (!started_) return;
    if (*old_owner) Lose();
    if (*new_owner) AttachNow();
  });
  bus.Subscribe(kSee, "Changed", [this](sd_bus_message* signal) {
    if (started_) TakeFields(signal, readers_);
  });
  bus.Subscribe(kSee, "Phone", [this](sd_bus_message* signal) { TakePhone(signal); });
  // A form or a box serves events, which the bus does not allow within one of its own.
  bus.Subscribe(kSee, "Form", [this](sd_bus_message* signal) {
    const char *verb = nullptr, *form = nullptr;
    if (sd_bus_message_read(signal, "ss", &verb, &form) <= 0) return;
    post_([this, verb = std::string(verb), form = std::string(form)] { TakeForm(verb, form); });
  });
  bus.Subscribe(kSee, "Box", [this](sd_bus_message* signal) {
    const char *text = nullptr, *title = nullptr;
    if (sd_bus_message_read(signal, "ss", &text, &title) <= 0) return;
    post_([this, text = std::string(text), title = std::string(title)] {
      seams_.dialogs.Exclamation(text, title);
    });
  });
  bus.Subscribe(kSee, "Notification", [this](sd_bus_message* signal) { TakeNotification(signal); });
  bus.Subscribe(kSee, "SaveApplications",
                [this](sd_bus_message*) { post_([this] { SaveApplications(); }); });
}

void BusEngine::AttachNow() {
  bus_->Send(kSee, "Attach", {}, [this](const BusCall& call) {
    if (!started_ || !call.answer) return;
    TakeFields(call.answer, readers_);
  });
  bus_->Send(kSteer, "Phone", {}, [this](const BusCall& call) {
    if (!started_) return;
    if (call.Answered()) TakePhone(call.answer);
    MaySteer(call.Answered());
  });
  check_.Ask();
}

void BusEngine::TakePhone(sd_bus_message* message) {
  const char* text = nullptr;
  if (sd_bus_message_read(message, "s", &text) > 0) state_.PhoneCode = text;
}

// Both look at what is theirs.
void BusEngine::SharedCheck::Ask() {
  seams_.inspector.Ask([this] { Judge(); });
  if (engine_.may_steer_) engine_.Order("Check");
}

void BusEngine::SharedCheck::Judge() {
  std::vector<CheckRow> rows = told;
  if (rows.empty()) rows.push_back(ServiceMissing(state_));
  Show(WithSession(std::move(rows), JudgeSession(state_, seams_.inspector.Found())));
}

// Nothing that the service said holds any more.
void BusEngine::Lose() {
  going_down_ = false;
  seams_.forms.Unload(Form::kAlert);
  panel_.Design();
  SetCaptions(state_, panel_);
  panel_.status_line.ForeColor(kRed);
  panel_.status_line.Caption(state_.Text(Message::kProtectionOff));
  panel_.tray.Show(TrayFace::kSilent, std::string(state_.Text(Message::kProtectionOff)));
  state_.PhoneCode.clear();
  check_.told.clear();
  check_.Judge();
  MaySteer(false);
}

void BusEngine::MaySteer(bool may) {
  if (std::exchange(may_steer_, may) != may && OnRights) OnRights();
}

void BusEngine::TakeForm(const std::string& verb, const std::string& form) {
  Forms& forms = seams_.forms;
  if (verb == "Dismiss") return forms.Dismiss();
  for (const FormName& row : kFormNames) {
    if (form != row.name) continue;
    if (verb == "Show" && row.form == Form::kAlert) forms.Show(row.form);
    if (verb == "Unload" && row.form != Form::kMain) forms.Unload(row.form);
    if (verb == "Hide") {
      going_down_ = row.form == Form::kMain;
      forms.Hide(row.form);
    }
  }
}

void BusEngine::TakeNotification(sd_bus_message* signal) {
  std::uint32_t notice = 0;
  int shown = 0, urgent = 0, stays = 0;
  const char *title = nullptr, *body = nullptr;
  if (sd_bus_message_read(signal, "ubssbb", &notice, &shown, &title, &body, &urgent, &stays) <= 0 ||
      notice >= kNotices || !started_) {
    return;
  }
  const auto place = static_cast<Notice>(notice);
  if (shown) {
    seams_.host.ShowNotification(place, {title, body, urgent != 0, stays != 0});
  } else {
    seams_.host.WithdrawNotification(place);
  }
}

// The service waits for the answer, however the companion fares.
void BusEngine::SaveApplications() {
  const std::string path = seams_.host.CompanionPath();
  const RunOutcome run = seams_.host.RunHidden(path, kCompanionLimit);
  if (run.end != RunOutcome::End::kExited) {
    seams_.host.Report("the companion " + path + " did not save the applications " + run.reason);
  }
  if (bus_ && bus_->Descriptor() >= 0) bus_->Send(kSee, "Saved");
}

void BusEngine::AskForShutdown() {
  if (seams_.dialogs.Ask(state_.Text(Message::kAskShutdown), kTitle)) Order("Shutdown");
}

void BusEngine::Order(const char* command) {
  if (!bus_) return;
  bus_->Send(kSteer, command, {}, [this](const BusCall& call) {
    if (call.Answered()) return;
    if (call.error_name == kAccessDenied) MaySteer(false);
    post_([this, refused = call.error_name == kAccessDenied] {
      if (refused) seams_.dialogs.Exclamation(state_.Text(Message::kViewOnlyHint), kTitle);
    });
    seams_.host.Report("the service did not take an order: " + call.error);
  });
}

std::shared_ptr<BusCall> BusEngine::Ask(const BusObject& object, const char* member,
                                        const Bus::Fill& fill) {
  if (!bus_) {
    auto none = std::make_shared<BusCall>();
    none->error = "no bus";
    return none;
  }
  return bus_->Call(object, member, std::chrono::steady_clock::now() + kPatience, fill);
}

void BusEngine::TellFailure(const BusCall& call) {
  seams_.host.Report("the service did not answer: " + call.error);
}

std::optional<std::string> BusEngine::ReadFile(const char* member, const Bus::Fill& fill) {
  const auto call = Ask(kSee, member, fill);
  int descriptor = -1;
  if (!call->answer || sd_bus_message_read(call->answer, "h", &descriptor) <= 0) {
    return std::nullopt;
  }
  // The message keeps the descriptor that it brought.
  const File file(fcntl(descriptor, F_DUPFD_CLOEXEC, 3));
  std::string content;
  if (!file || !file.ReadAll(content)) return std::nullopt;
  return content;
}

// Paths of no disk: the names by which the service knows them.
std::string BusEngine::PathOf(Journal journal) const {
  for (const JournalName& row : kJournalNames) {
    if (row.journal == journal) return std::string(row.name);
  }
  return "";
}

std::optional<std::string> BusEngine::JournalFiles::Read(const std::string& path) const {
  return engine_.ReadFile("Journal", [&](sd_bus_message* message) {
    sd_bus_message_append(message, "s", path.c_str());
  });
}

// A report is only ever rewritten to be marked as dealt with.
bool BusEngine::JournalFiles::Replace(const std::string& path, std::string_view) {
  return path == engine_.PathOf(Journal::kReport) && engine_.Ask(kSteer, "ClearReport")->Answered();
}

bool BusEngine::JournalFiles::Remove(const std::string& path) {
  if (path != engine_.PathOf(Journal::kLog)) return false;
  const auto call = engine_.Ask(kSteer, "ClearLog");
  int cleared = 0;
  return call->answer && sd_bus_message_read(call->answer, "b", &cleared) > 0 && cleared;
}

std::vector<Sample> BusEngine::ServiceHistory::Samples(Step step, sys_seconds from,
                                                       sys_seconds to) {
  const auto rows = engine_.ReadFile("Samples", [&](sd_bus_message* message) {
    sd_bus_message_append(message, "bxx", static_cast<int>(step == Step::kHour),
                          static_cast<std::int64_t>(from.time_since_epoch().count()),
                          static_cast<std::int64_t>(to.time_since_epoch().count()));
  });
  return SamplesOf(rows.value_or(""));
}

std::vector<Episode> BusEngine::ServiceHistory::Episodes(sys_seconds from, sys_seconds to) {
  const auto rows = engine_.ReadFile("Episodes", [&](sd_bus_message* message) {
    sd_bus_message_append(message, "xx", static_cast<std::int64_t>(from.time_since_epoch().count()),
                          static_cast<std::int64_t>(to.time_since_epoch().count()));
  });
  return EpisodesOf(rows.value_or(""));
}

std::optional<sys_seconds> BusEngine::ServiceHistory::First() {
  const auto call = engine_.Ask(kSee, "FirstSample");
  int there = 0;
  std::int64_t seconds = 0;
  if (!call->answer || sd_bus_message_read(call->answer, "bx", &there, &seconds) <= 0 || !there) {
    return std::nullopt;
  }
  return sys_seconds(std::chrono::seconds(seconds));
}

ScheduleEntries BusEngine::Schedule(const ScheduleSection& section) {
  ScheduleEntries entries;
  const auto call = Ask(kSee, "Schedule", [&](sd_bus_message* message) {
    sd_bus_message_append(message, "s", std::string(section.name).c_str());
  });
  if (!call->answer) {
    TellFailure(*call);
    return entries;
  }
  sd_bus_message_enter_container(call->answer, SD_BUS_TYPE_ARRAY, "(ssss)");
  for (ScheduleEntry& entry : entries) {
    const char* texts[4] = {};
    if (sd_bus_message_read(call->answer, "(ssss)", &texts[0], &texts[1], &texts[2], &texts[3]) <=
        0) {
      break;
    }
    entry = {texts[0], texts[1], texts[2], texts[3]};
  }
  return entries;
}

void BusEngine::SaveSchedule(const ScheduleSection& section, const ScheduleEntries& entries) {
  const auto call = Ask(kSteer, "SaveSchedule", [&](sd_bus_message* message) {
    sd_bus_message_append(message, "s", std::string(section.name).c_str());
    sd_bus_message_open_container(message, SD_BUS_TYPE_ARRAY, "(ssss)");
    for (const ScheduleEntry& entry : entries) {
      sd_bus_message_append(message, "(ssss)", BusText(entry.enable).c_str(),
                            BusText(entry.on).c_str(), BusText(entry.off).c_str(),
                            BusText(entry.date).c_str());
    }
    sd_bus_message_close_container(message);
  });
  if (!call->Answered()) TellFailure(*call);
}

bool BusEngine::SaveSettings(const SettingsValues& values) {
  const auto call = Ask(kSteer, "SaveSettings", [&](sd_bus_message* message) {
    sd_bus_message_append_array(message, 'n', values.slots.data(), sizeof values.slots);
    sd_bus_message_append(message, "s", BusText(values.phone).c_str());
  });
  int saved = 0;
  if (call->answer && sd_bus_message_read(call->answer, "b", &saved) > 0) return saved != 0;
  TellFailure(*call);
  return false;
}

}  // namespace orvane
