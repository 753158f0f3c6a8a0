// The logic of `frmAlert`, the small window that tells the seconds left.
#pragma once

#include "app/panel.h"
#include "app/seams.h"
#include "app/state.h"

namespace orvane {

class FrmAlert {
 public:
  FrmAlert(const State& state, const Panel& panel, const Seams& seams);

  // Before the form is shown for the first time: takes the seconds left and starts its timer.
  void Form_Load();

  // The form has gone: stops its timer.
  void Form_Unload();

  // Closes the alert; the count goes on, and the next due period opens the alert again.
  void Command1_Click() { seams_.forms.Unload(Form::frmAlert); }

  Label lblSecond;  // the seconds left

 private:
  void Timer1_Timer();
  void ShowSeconds();

  const State& state_;
  const Panel& panel_;
  Seams seams_;
};

}  // namespace orvane
