// The engine as a window sees it: what it may see and what it may ask. What the engine tells its
// windows, it tells by way of Forms and Dialogs.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>

#include "app/panel.h"
#include "app/state.h"
#include "check/protection_view.h"
#include "history/history.h"
#include "platform/disk.h"
#include "platform/forms.h"
#include "protect/alert_form.h"
#include "schedule/schedule_store.h"

namespace orvane {

// What the settings dialog saves: all slots, and the emergency number.
struct SettingsValues {
  std::array<std::int16_t, 11> slots{};
  std::string phone;
};

// The files that windows read.
enum class Journal { kLog, kDayRecords, kReport };

// ScheduleStore: the schedule to show and to save.
class Engine : public ScheduleStore {
 public:
  // Settings, language and the seconds left. A window only reads them.
  virtual const State& Shown() const = 0;

  // A window observes it and turns its faces over; all else is the engine's to write.
  virtual Panel& Fields() = 0;

  virtual AlertForm& Alert() = 0;
  virtual ProtectionView& Check() = 0;

  // The way down has begun: the windows stay off the screen until the operating system ends them.
  virtual bool GoingDown() const = 0;

  // Whether the user may change or order anything. Without that all below does nothing but show.
  virtual bool MaySteer() const = 0;
  // Belongs to the windows; runs when MaySteer or the language has changed.
  std::function<void()> OnRights;

  // The journals lie in Files under these paths. What windows do to them there is all that can be
  // done: read, delete the log, mark the report as dealt with.
  virtual Disk& Files() = 0;
  virtual std::string PathOf(Journal journal) const = 0;
  virtual HistorySource& History() = 0;

  // Takes the settings over, writes the file, and brings the running program into line. False when
  // the file could not be written: the settings then hold until the engine ends.
  virtual bool SaveSettings(const SettingsValues& values) = 0;

  // The commands of the menus.
  virtual void ToggleBeeper() = 0;
  virtual void TestFor10Seconds() = 0;
  virtual void TestToLow() = 0;
  virtual void CancelTest() = 0;
  // Takes the computer down if the user says Yes.
  virtual void AskForShutdown() = 0;

  void OpenSettings() { forms_.Show(Form::kSettings); }
  void Exit() { forms_.Unload(Form::kMain); }
  void OpenWeek() { forms_.Show(Form::kWeek); }
  void OpenSpecialDays() { forms_.Show(Form::kSpecialDays); }
  void OpenSelfTests() { forms_.Show(Form::kSelfTests); }
  void OpenLog() { forms_.Show(Form::kLog); }
  void OpenDayHistory() { forms_.Show(Form::kDayHistory); }
  void OpenHistory() { forms_.Show(Form::kHistory); }
  void OpenShutdownReport() { forms_.Show(Form::kShutdownReport); }
  void OpenProtectionCheck() { forms_.Show(Form::kProtectionCheck); }
  void OpenAbout() { forms_.Show(Form::kAbout); }

  void ShowDials() { Fields().bar_face.Visible(false); }
  void ShowBars() { Fields().bar_face.Visible(true); }

 protected:
  explicit Engine(Forms& forms) : forms_(forms) {}

 private:
  Forms& forms_;
};

}  // namespace orvane
