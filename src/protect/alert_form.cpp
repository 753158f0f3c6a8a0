#include "protect/alert_form.h"

#include <string>

namespace orvane {
namespace {

constexpr int kTick = 1000;

}  // namespace

AlertForm::AlertForm(const State& state, const Panel& panel, const Seams& seams)
    : state_(state), panel_(panel), seams_(seams) {
  seconds.ForeColor(kRed);
}

void AlertForm::Load() {
  showing_ = true;
  ShowSeconds();
  Timer& timer = seams_.alert_timer;
  timer.Enabled(false);
  timer.Interval(kTick);
  timer.Tick = [this] { OnSecond(); };
  timer.Enabled(true);
}

void AlertForm::Unload() {
  showing_ = false;
  seams_.alert_timer.Enabled(false);
}

void AlertForm::OnSecond() {
  if (state_.IsNormal(panel_.mains)) {
    seams_.forms.Unload(Form::kAlert);
  } else {
    ShowSeconds();
  }
}

void AlertForm::ShowSeconds() {
  seconds.Caption(std::to_string(state_.ShutdownCountdown));
}

}  // namespace orvane
