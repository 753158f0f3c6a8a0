// The controller of `frmMain`: how it comes up, how it goes down, and what its timers and menus do.
#pragma once

#include "app/panel.h"
#include "app/seams.h"
#include "app/state.h"
#include "dial/dialler.h"
#include "link/ups_link.h"
#include "protect/countdown.h"
#include "protect/frm_alert.h"
#include "protect/shutdown.h"
#include "records/journals.h"
#include "schedule/schedule_engine.h"

namespace orvane {

class FrmMain {
 public:
  FrmMain(State& state, Panel& panel, const Seams& seams);

  // Brings the form up to the moment before it is shown: settings, captions, port. A form that is
  // loaded stays as it is. False when another instance runs on the same program directory; the user
  // has been told, and the program has to end at once.
  bool Form_Load();

  // Between Form_Load and Form_QueryUnload, also while a box holds the load.
  bool Loaded() const { return loaded_; }

  // The way down has begun: the form stays off the screen until the operating system ends it.
  bool GoingDown() const { return shutdown_.Begun(); }

  // The form has become the active window: replies are taken from now on.
  void Form_Activate();

  // The form goes: ends all timers and a running call, closes both ports and logs the end. Nothing
  // happens after it, and a form that is not loaded is left alone.
  void Form_QueryUnload();

  // Unloads the form and shows it anew, as after a change of the UPS port.
  void Reload();

  // Writes the settings to their file. False when that failed: the file is then older than the
  // settings in memory, and loads of the form keep the latter until a save succeeds.
  bool SaveSettings();

  void mnuSetup_Click() { seams_.forms.Show(Form::frmSetup); }
  void mnuOnOrOffBeep_Click();
  void mnuExit_Click() { seams_.forms.Unload(Form::frmMain); }
  void mnuWeek_Click() { seams_.forms.Show(Form::frmWeek); }
  void mnuSpecial_Click() { seams_.forms.Show(Form::frmSpecial); }
  void mnuTestTimer_Click() { seams_.forms.Show(Form::frmSelfTest); }
  void mnuLog_Click() { seams_.forms.Show(Form::frmLog); }
  void mnuDateRecord_Click() { seams_.forms.Show(Form::frmDateRc); }
  void mnuShutRec_Click() { seams_.forms.Show(Form::frmShutRec); }
  void mnuTest10S_Click();
  void mnuTestToLow_Click();
  void mnuCancelTest_Click();
  void mnuShutDown_Click();
  void mnuAbout_Click() { seams_.forms.Show(Form::frmAbout); }

  // The logic of the forms that live on the timers of this one.
  FrmAlert& Alert() { return alert_; }

  void picAPC_DblClick() { panel_.picAPC.Visible(false); }
  void Image2_DblClick() { panel_.picAPC.Visible(true); }

 private:
  std::string SettingsPath() const;
  void DesignTimers();
  void AttachTimers();
  void tmrDate_Timer();

  State& state_;
  Panel& panel_;
  Seams seams_;
  Journals journals_;
  UpsLink link_;
  Shutdown shutdown_;
  Countdown countdown_;
  FrmAlert alert_;
  Dialler dialler_;
  ScheduleEngine schedule_;
  bool loaded_ = false;
  bool file_is_old_ = false;  // the last save of the settings failed
};

}  // namespace orvane
