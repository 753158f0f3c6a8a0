#include "frame/frm_main.h"

#include <utility>

#include "app/calendar.h"
#include "app/captions.h"
#include "app/gauges.h"
#include "app/message_numbers.h"
#include "app/settings.h"
#include "link/commands.h"

namespace orvane {
namespace {

constexpr int kDialDelay = 5000;

constexpr std::string_view kAlreadyRunning = "Orvane Have been run！";
constexpr std::string_view kAlreadyRunningTitle = "Orvane：Info";
constexpr std::string_view kTitle = "Orvane";

}  // namespace

FrmMain::FrmMain(State& state, Panel& panel, const Seams& seams)
    : state_(state),
      panel_(panel),
      seams_(seams),
      journals_(seams.disk, seams.clock, seams.host.ProgramDirectory()),
      link_(state, panel, journals_, seams),
      shutdown_(state, panel, journals_, seams),
      countdown_(state, panel, shutdown_, seams),
      alert_(state, panel, seams),
      dialler_(state, panel, seams),
      schedule_(state, journals_, shutdown_, seams) {
  seams_.host.OnSleep([this](bool asleep) {
    if (GoingDown()) return;
    if (asleep) {
      link_.Suspend();
    } else {
      link_.Resume();
    }
  });
}

bool FrmMain::Form_Load() {
  if (loaded_) return true;
  // The guard comes first: behind its box nothing may happen.
  if (seams_.host.PrevInstance()) {
    seams_.dialogs.Exclamation(kAlreadyRunning, kAlreadyRunningTitle);
    return false;
  }
  loaded_ = true;
  state_.Main = {};
  panel_.Design();
  DesignTimers();
  AttachTimers();
  link_.Attach();
  seams_.MSComm1.RThreshold(0);
  CaptureNeedles(panel_, state_.Main);
  if (!file_is_old_) LoadSettings(seams_.disk, SettingsPath(), state_);
  state_.ResBase = DeriveResBase(state_);
  SetCaptions(state_, panel_);
  static_cast<void>(journals_.WriteLog(state_.Message(message::kProgramStart)));
  state_.ShutdownCommand = DeriveShutdownCommand(state_);
  link_.OpenPort();
  // A box of the port may have held the load until the end of the program.
  return loaded_;
}

void FrmMain::Form_Activate() {
  if (!loaded_ || GoingDown()) return;
  seams_.MSComm1.RThreshold(1);
}

// First whatever could act once more: while the end waits for a slow disk, a tick may fall due.
void FrmMain::Form_QueryUnload() {
  if (!std::exchange(loaded_, false)) return;
  dialler_.Stop();
  seams_.timers.Stop();
  seams_.alert_timer.Enabled(false);
  seams_.MSComm1.RThreshold(0);
  static_cast<void>(seams_.MSComm1.PortOpen(false));
  static_cast<void>(seams_.MSComm2.PortOpen(false));
  static_cast<void>(journals_.WriteLog(state_.Message(message::kProgramEnd)));
}

void FrmMain::Reload() {
  seams_.forms.Unload(Form::frmMain);
  seams_.forms.Show(Form::frmMain);
  // A box of the load lets the schedule run, and that may have taken the system down.
  if (GoingDown()) seams_.forms.Hide(Form::frmMain);
}

bool FrmMain::SaveSettings() {
  file_is_old_ = !orvane::SaveSettings(seams_.disk, SettingsPath(), state_);
  return !file_is_old_;
}

void FrmMain::mnuOnOrOffBeep_Click() {
  static_cast<void>(SendCommand(seams_.MSComm1, kToggleBeeper));
}

void FrmMain::mnuTest10S_Click() {
  static_cast<void>(SendCommand(seams_.MSComm1, kSelfTest10Seconds));
}

void FrmMain::mnuTestToLow_Click() {
  static_cast<void>(SendCommand(seams_.MSComm1, kSelfTestToLow));
}

void FrmMain::mnuCancelTest_Click() {
  static_cast<void>(SendCommand(seams_.MSComm1, kCancelSelfTest));
}

void FrmMain::mnuShutDown_Click() {
  if (seams_.dialogs.Ask(state_.Message(message::kAskShutdown), kTitle)) {
    shutdown_.ShutdownSequence(message::kShutdownByMenu);
  }
}

std::string FrmMain::SettingsPath() const {
  return seams_.host.ProgramDirectory() + "/Orvane.ini";
}

// The timers as the form was designed: poll, schedule and clock run from the start.
void FrmMain::DesignTimers() {
  struct Row {
    Timer& timer;
    int interval;
    bool enabled;
  };
  const Timers& timers = seams_.timers;
  for (const Row& row : {Row{timers.Timer1, 2000, true}, Row{timers.Timer2, 1000, false},
                         Row{timers.Timer3, 5000, true}, Row{timers.TimerDial, kDialDelay, false},
                         Row{timers.tmrDate, 1000, true}}) {
    row.timer.Enabled(false);
    row.timer.Interval(row.interval);
    row.timer.Enabled(row.enabled);
  }
}

void FrmMain::AttachTimers() {
  seams_.timers.Timer1.Tick = [this] { link_.Timer1_Timer(); };
  seams_.timers.Timer2.Tick = [this] { countdown_.Timer2_Timer(); };
  seams_.timers.Timer3.Tick = [this] { schedule_.Timer3_Timer(); };
  dialler_.Attach();
  seams_.timers.tmrDate.Tick = [this] { tmrDate_Timer(); };
}

void FrmMain::tmrDate_Timer() {
  const LocalTime now = seams_.clock.Now();
  panel_.Label15.Caption(DateText(now) + ' ' + TimeText(now));
}

}  // namespace orvane
