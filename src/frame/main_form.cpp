#include "frame/main_form.h"

#include <utility>

#include "app/calendar.h"
#include "app/captions.h"
#include "app/gauges.h"
#include "app/settings.h"
#include "frame/settings_form.h"
#include "link/commands.h"

namespace orvane {
namespace {

constexpr int kDialDelay = 5000;

// A UPS may run longer from its battery, but does not test itself for longer.
constexpr std::chrono::hours kLongestTestToLow{4};

constexpr std::string_view kAlreadyRunning = "Orvane Have been run！";
constexpr std::string_view kAlreadyRunningTitle = "Orvane：Info";
constexpr std::string_view kTitle = "Orvane";

}  // namespace

MainForm::MainForm(State& state, Panel& panel, const Seams& seams)
    : Engine(seams.forms),
      state_(state),
      panel_(panel),
      seams_(seams),
      journals_(seams.disk, seams.clock, seams.host.ProgramDirectory()),
      link_(state, panel, journals_, seams),
      shutdown_(state, panel, journals_, seams),
      countdown_(state, panel, shutdown_, seams),
      alert_(state, panel, seams),
      notices_(state, panel, alert_, seams),
      dialler_(state, panel, seams),
      schedule_(state, journals_, shutdown_, seams),
      share_(state, panel, seams),
      schedule_file_(state, seams.disk, seams.host),
      check_(state, panel, seams),
      tray_(state, panel, seams),
      history_(state, panel, seams.clock) {
  link_.OnShown = [this] { share_.Update(); };
  shutdown_.OnBegin = [this] {
    share_.TellGoingDown();
    tray_.TellGoingDown();
  };
  schedule_.OnSelfTest = [this] { history_.BeginSelfTest(kLongestTestToLow); };
  shutdown_.OnUpsTold = [this] { history_.BeginWayDown(); };
  shutdown_.OnEnd = [this] { share_.AwaitOthers(); };
  seams_.host.OnSleep([this](bool asleep) {
    if (GoingDown()) return;
    if (asleep) {
      link_.Suspend();
    } else {
      link_.Resume();
    }
  });
}

bool MainForm::Load() {
  if (loaded_) return true;
  // The guard comes first: behind its box nothing may happen.
  if (seams_.host.IsSecondInstance()) {
    seams_.dialogs.Exclamation(kAlreadyRunning, kAlreadyRunningTitle);
    return false;
  }
  loaded_ = true;
  state_.Main = {};
  panel_.Design();
  DesignTimers();
  AttachTimers();
  link_.Attach();
  seams_.ups_port.OnReceive = [this] {
    link_.OnReceive();
    notices_.Update();
    tray_.Update();
  };
  notices_.Withdraw();
  seams_.ups_port.Notify(false);
  CaptureNeedles(panel_, state_.Main);
  if (!file_is_old_) LoadSettings(seams_.disk, SettingsPath(Directory()), state_);
  state_.language = DeriveLanguage(state_);
  SetCaptions(state_, panel_);
  static_cast<void>(journals_.WriteLog(state_.Text(Message::kProgramStart)));
  state_.ShutdownCommand = DeriveShutdownCommand(state_);
  share_.Start();
  tray_.Update();
  link_.OpenPort();
  check_.Start();
  // A box of the port may have held the load until the end of the program.
  return loaded_;
}

void MainForm::Activate() {
  if (!loaded_ || GoingDown()) return;
  seams_.ups_port.Notify(true);
}

// First whatever could act once more: while the end waits for a slow disk, a tick may fall due.
void MainForm::Unload() {
  if (!std::exchange(loaded_, false)) return;
  share_.Stop();
  dialler_.Stop();
  seams_.timers.Stop();
  notices_.Withdraw();
  seams_.alert_timer.Enabled(false);
  seams_.ups_port.Notify(false);
  seams_.ups_port.Close();
  seams_.modem_port.Close();
  static_cast<void>(journals_.WriteLog(state_.Text(Message::kProgramEnd)));
  history_.End();
}

void MainForm::OnDevicesChange() {
  if (loaded_ && !GoingDown()) link_.OnDevicesChange();
}

void MainForm::Reload() {
  seams_.forms.Unload(Form::kMain);
  seams_.forms.Show(Form::kMain);
  // A box of the load lets the schedule run, and that may have taken the system down.
  if (GoingDown()) seams_.forms.Hide(Form::kMain);
}

std::string MainForm::PathOf(Journal journal) const {
  switch (journal) {
    case Journal::kLog:
      return journals_.LogPath();
    case Journal::kDayRecords:
      return journals_.DateRecPath();
    case Journal::kReport:
      break;
  }
  return seams_.host.ReportDirectory() + "/SaverApp.INI";
}

// A changed UPS port reloads the form, otherwise its port line and captions are written anew: with
// the port searched for, the one that the search stands on.
bool MainForm::SaveSettings(const SettingsValues& values) {
  const std::int16_t old_port = state_.Settings[kUpsPort];
  state_.Settings = values.slots;
  state_.PhoneCode = SettingsForm::PhoneText(values.phone);
  state_.ShutdownCommand = DeriveShutdownCommand(state_);
  state_.language = DeriveLanguage(state_);
  const bool saved = orvane::SaveSettings(seams_.disk, SettingsPath(Directory()), state_);
  file_is_old_ = !saved;
  check_.Ask();
  state_.ShutdownCountdown = MainsFailureDelay(state_);
  const int port = state_.Settings[kUpsPort];
  if (port != old_port) {
    Reload();
  } else {
    panel_.port_line.Caption(PortLine(state_, port != 0 ? port : state_.Main.PortTry + 1));
    SetCaptions(state_, panel_);
  }
  return saved;
}

void MainForm::ToggleBeeper() {
  static_cast<void>(SendCommand(seams_.ups_port, kToggleBeeper));
}

void MainForm::TestFor10Seconds() {
  if (SendCommand(seams_.ups_port, kSelfTest10Seconds)) {
    history_.BeginSelfTest(std::chrono::seconds(10));
  }
}

void MainForm::TestToLow() {
  if (SendCommand(seams_.ups_port, kSelfTestToLow)) history_.BeginSelfTest(kLongestTestToLow);
}

void MainForm::CancelTest() {
  if (SendCommand(seams_.ups_port, kCancelSelfTest)) history_.EndSelfTest();
}

void MainForm::AskForShutdown() {
  if (seams_.dialogs.Ask(state_.Text(Message::kAskShutdown), kTitle)) GoDown();
}

// The timers as the form was designed: poll, schedule and clock run from the start.
void MainForm::DesignTimers() {
  struct Row {
    Timer& timer;
    int interval;
    bool enabled;
  };
  const Timers& timers = seams_.timers;
  for (const Row& row :
       {Row{timers.poll_timer, 2000, true}, Row{timers.countdown_timer, 1000, false},
        Row{timers.schedule_timer, 5000, true}, Row{timers.dial_timer, kDialDelay, false},
        Row{timers.clock_timer, 1000, true}}) {
    row.timer.Enabled(false);
    row.timer.Interval(row.interval);
    row.timer.Enabled(row.enabled);
  }
}

void MainForm::AttachTimers() {
  seams_.timers.poll_timer.Tick = [this] {
    link_.OnPoll();
    notices_.OnPoll();
    share_.OnPoll();
    check_.OnPoll();
    tray_.Update();
    KeepTimers();
    if (!seams_.timers.clock_timer.Enabled() && !GoingDown()) OnClock();
    Beat();
  };
  seams_.timers.countdown_timer.Tick = [this] {
    countdown_.OnCountdown();
    if (GoingDown()) return;
    notices_.Update();
    tray_.Update();
    Beat();
  };
  seams_.timers.schedule_timer.Tick = [this] {
    schedule_.OnSchedule();
    if (!GoingDown()) check_.Update();
    KeepTimers();
  };
  dialler_.Attach();
  seams_.timers.clock_timer.Tick = [this] {
    OnClock();
    if (!seams_.timers.poll_timer.Enabled()) Beat();
  };
}

void MainForm::OnClock() {
  ShowClock();
  history_.Look();
}

void MainForm::Watched(bool watched) {
  watched_ = watched;
  KeepTimers();
  if (watched && loaded_) ShowClock();
}

void MainForm::KeepTimers() {
  if (!loaded_ || GoingDown()) return;
  const bool needed = watched_ || !seams_.timers.poll_timer.Enabled();
  seams_.timers.clock_timer.Enabled(needed);
  seams_.timers.schedule_timer.Enabled(needed || schedule_.HoldsAnything());
}

void MainForm::ShowClock() {
  const LocalTime now = seams_.clock.Now();
  panel_.clock.Caption(DateText(now) + ' ' + TimeText(now));
}

}  // namespace orvane
