// The controller of the main window: how it comes up and goes down, what its timers and menus do.
#pragma once

#include <functional>

#include "app/panel.h"
#include "app/seams.h"
#include "app/state.h"
#include "check/protection_check.h"
#include "dial/dialler.h"
#include "frame/engine.h"
#include "history/recorder.h"
#include "link/ups_link.h"
#include "protect/alert_form.h"
#include "protect/countdown.h"
#include "protect/notices.h"
#include "protect/shutdown.h"
#include "protect/tray_state.h"
#include "records/journals.h"
#include "schedule/schedule_engine.h"
#include "schedule/schedule_store.h"
#include "share/ups_share.h"

namespace orvane {

class MainForm : public Engine {
 public:
  MainForm(State& state, Panel& panel, const Seams& seams);

  // Runs behind each poll and each second of a count, and each second while there is no port to
  // poll: the engine lives.
  std::function<void()> OnBeat;

  // Brings the form up to the moment before it is shown: settings, captions, port. A form that is
  // loaded stays as it is. False when another instance runs on the same program directory; the user
  // has seen a message box, and the program has to end at once.
  bool Load();

  // Between Load and Unload, also while a box holds the load.
  bool Loaded() const { return loaded_; }

  bool GoingDown() const override { return shutdown_.Begun(); }

  // The form has become the active window: replies are taken from now on.
  void Activate();

  // The form goes: ends all timers and a running call, closes both ports and logs the end. Nothing
  // happens after it, and a form that is not loaded is left alone.
  void Unload();

  // Whether anybody looks at the panel, as it is taken to be at first. Otherwise its clock goes
  // along with the polls, an empty schedule is not looked at, and the engine wakes up less often.
  void Watched(bool watched);

  // Devices have come or gone: a UPS port that could not be opened by the load may be there now.
  void OnDevicesChange();

  // Unloads the form and shows it anew, as after a change of the UPS port.
  void Reload();

  // Keeps the history there from now on; `store` outlives this object.
  void KeepHistory(HistoryStore& store) {
    history_store_ = &store;
    history_.KeepIn(store);
  }

  // Has the schedule hold that its file holds.
  void LoadSchedule() { orvane::LoadSchedule(seams_.disk, SchedulePath(Directory()), state_); }

  // Takes the computer down.
  void GoDown() { shutdown_.ShutdownSequence(Message::kShutdownByMenu); }

  // Engine.
  const State& Shown() const override { return state_; }
  Panel& Fields() override { return panel_; }
  AlertForm& Alert() override { return alert_; }
  bool MaySteer() const override { return true; }
  Disk& Files() override { return seams_.disk; }
  std::string PathOf(Journal journal) const override;
  HistorySource& History() override { return *history_store_; }
  ScheduleEntries Schedule(const ScheduleSection& section) override {
    return schedule_file_.Schedule(section);
  }
  void SaveSchedule(const ScheduleSection& section, const ScheduleEntries& entries) override {
    schedule_file_.SaveSchedule(section, entries);
    KeepTimers();
  }
  bool SaveSettings(const SettingsValues& values) override;
  void ToggleBeeper() override;
  void TestFor10Seconds() override;
  void TestToLow() override;
  void CancelTest() override;
  void AskForShutdown() override;
  ProtectionCheck& Check() override { return check_; }

 private:
  std::string Directory() const { return seams_.host.ProgramDirectory(); }
  void DesignTimers();
  void AttachTimers();
  void OnClock();
  void ShowClock();
  void KeepTimers();
  void Beat() {
    if (OnBeat) OnBeat();
  }

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
  ScheduleFile schedule_file_;
  ProtectionCheck check_;
  TrayState tray_;
  Recorder history_;
  HistoryStore* history_store_ = nullptr;  // where the history is kept
  bool loaded_ = false;
  bool watched_ = true;
  // The last save of the settings failed: the file is older than the settings in memory, and loads
  // of the form keep the latter until a save succeeds.
  bool file_is_old_ = false;
};

}  // namespace orvane
