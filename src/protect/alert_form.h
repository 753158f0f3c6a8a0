// The logic of the alert, the small window that shows the seconds left.
#pragma once

#include "app/panel.h"
#include "app/seams.h"
#include "app/state.h"

namespace orvane {

class AlertForm {
 public:
  AlertForm(const State& state, const Panel& panel, const Seams& seams);

  // Before the form is shown for the first time: takes the seconds left and starts its timer.
  void Load();

  // The form has gone: stops its timer.
  void Unload();

  // Closes the alert; the count goes on, and the next due period opens the alert again.
  void Close() { seams_.forms.Unload(Form::kAlert); }

  // Between Load and Unload.
  bool Showing() const { return showing_; }

  Label seconds;  // the seconds left

 private:
  void OnSecond();
  void ShowSeconds();

  const State& state_;
  const Panel& panel_;
  Seams seams_;
  bool showing_ = false;
};

}  // namespace orvane
