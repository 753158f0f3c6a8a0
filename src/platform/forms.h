// The windows as the logic sees them: shown and unloaded by name.
#pragma once

namespace orvane {

enum class Form {
  kMain,
  kSplash,
  kAbout,
  kAlert,
  kSettings,
  kWeek,
  kSpecialDays,
  kSelfTests,
  kLog,
  kDayHistory,
  kHistory,
  kShutdownReport,
  kProtectionCheck,
};

struct Forms {
  virtual ~Forms() = default;

  // Creates the form if need be and shows it in front, without waiting for it. A form that stands
  // already keeps what it shows.
  virtual void Show(Form form) = 0;

  // Takes the form off the screen; it lives on.
  virtual void Hide(Form form) = 0;

  // Ends the form. A form that is not open is left alone. Unloading the main form ends the program
  // when the running handler is over, unless it is shown again before that.
  virtual void Unload(Form form) = 0;

  // Takes every menu, drop-down list and message box that stands open off the screen, and with it
  // the keyboard and the pointer that it holds; a question is answered No. The callers that boxes
  // hold go on when the running handler is over.
  virtual void Dismiss() = 0;

  // Serves the events that wait, once.
  virtual void DoEvents() = 0;
};

}  // namespace orvane
