// The controller of the main window: how it comes up and goes down, what its timers and menus do.
#pragma once

#include "app/panel.h"
#include "app/seams.h"
#include "app/state.h"
#include "check/protection_check.h"
#include "dial/dialler.h"
#include "history/recorder.h"
#include "link/ups_link.h"
#include "protect/alert_form.h"
#include "protect/countdown.h"
#include "protect/notices.h"
#include "protect/shutdown.h"
#include "protect/tray_state.h"
#include "records/journals.h"
#include "schedule/schedule_engine.h"
#include "share/ups_share.h"

namespace orvane {

class MainForm {
 public:
  MainForm(State& state, Panel& panel, const Seams& seams);

  // Brings the form up to the moment before it is shown: settings, captions, port. A form that is
  // loaded stays as it is. False when another instance runs on the same program directory; the user
  // has seen a message box, and the program has to end at once.
  bool Load();

  // Between Load and Unload, also while a box holds the load.
  bool Loaded() const { return loaded_; }

  // The way down has begun: the form stays off the screen until the operating system ends it.
  bool GoingDown() const { return shutdown_.Begun(); }

  // The form has become the active window: replies are taken from now on.
  void Activate();

  // The form goes: ends all timers and a running call, closes both ports and logs the end. Nothing
  // happens after it, and a form that is not loaded is left alone.
  void Unload();

  // Devices have come or gone: a UPS port that could not be opened by the load may be there now.
  void OnDevicesChange();

  // Unloads the form and shows it anew, as after a change of the UPS port.
  void Reload();

  // Keeps the history there from now on; `store` outlives this object.
  void KeepHistory(HistoryStore& store) { history_.KeepIn(store); }

  // Writes the settings to their file. False when that failed: the file is then older than the
  // settings in memory, and loads of the form keep the latter until a save succeeds.
  bool SaveSettings();

  void OpenSettings() { seams_.forms.Show(Form::kSettings); }
  void ToggleBeeper();
  void Exit() { seams_.forms.Unload(Form::kMain); }
  void OpenWeek() { seams_.forms.Show(Form::kWeek); }
  void OpenSpecialDays() { seams_.forms.Show(Form::kSpecialDays); }
  void OpenSelfTests() { seams_.forms.Show(Form::kSelfTests); }
  void OpenLog() { seams_.forms.Show(Form::kLog); }
  void OpenDayHistory() { seams_.forms.Show(Form::kDayHistory); }
  void OpenHistory() { seams_.forms.Show(Form::kHistory); }
  void OpenShutdownReport() { seams_.forms.Show(Form::kShutdownReport); }
  void TestFor10Seconds();
  void TestToLow();
  void CancelTest();
  void AskForShutdown();
  void OpenAbout() { seams_.forms.Show(Form::kAbout); }

  void OpenProtectionCheck() { seams_.forms.Show(Form::kProtectionCheck); }
  ProtectionCheck& Check() { return check_; }

  // The logic of the forms that live on the timers of this one.
  AlertForm& Alert() { return alert_; }

  void ShowDials() { panel_.bar_face.Visible(false); }
  void ShowBars() { panel_.bar_face.Visible(true); }

 private:
  void DesignTimers();
  void AttachTimers();
  void ShowClock();

  State& state_;
  Panel& panel_;
  Seams seams_;
  Journals journals_;
  UpsLink link_;
  Shutdown shutdown_;
  Countdown countdown_;
  AlertForm alert_;
  Notices notices_;
  Dialler dialler_;
  ScheduleEngine schedule_;
  UpsShare share_;
  ProtectionCheck check_;
  TrayState tray_;
  Recorder history_;
  bool loaded_ = false;
  bool file_is_old_ = false;  // the last save of the settings failed
};

}  // namespace orvane
