#include "protect/frm_alert.h"

#include <string>

namespace orvane {
namespace {

constexpr int kTick = 1000;

}  // namespace

FrmAlert::FrmAlert(const State& state, const Panel& panel, const Seams& seams)
    : state_(state), panel_(panel), seams_(seams) {
  lblSecond.ForeColor(kRed);
}

void FrmAlert::Form_Load() {
  ShowSeconds();
  Timer& timer = seams_.alert_timer;
  timer.Enabled(false);
  timer.Interval(kTick);
  timer.Tick = [this] { Timer1_Timer(); };
  timer.Enabled(true);
}

void FrmAlert::Form_Unload() {
  seams_.alert_timer.Enabled(false);
}

void FrmAlert::Timer1_Timer() {
  if (state_.IsNormal(panel_.lblAc)) {
    seams_.forms.Unload(Form::frmAlert);
  } else {
    ShowSeconds();
  }
}

void FrmAlert::ShowSeconds() {
  lblSecond.Caption(std::to_string(state_.ShutdownCountdown));
}

}  // namespace orvane
