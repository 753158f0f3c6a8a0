#include "protect/countdown.h"

#include <cstdint>
#include <string>

#include "app/settings.h"

namespace orvane {
namespace {

constexpr std::int32_t kSecondsPerMinute = 60;

}  // namespace

void Countdown::OnCountdown() {
  std::int32_t& countdown = state_.ShutdownCountdown;
  if (++state_.Main.AlertSeconds == 1) countdown = MainsFailureDelay(state_);
  CountDown();
  ShowAlertWhenDue();
  if (countdown <= 0) countdown = 0;
  std::string text(state_.Text(Message::kSecondsLeftBefore));
  text += ' ' + std::to_string(countdown) + ' ';
  text += state_.Text(Message::kSecondsLeftBehind);
  panel_.status_line.Caption(text);
  if (countdown == 0) shutdown_.ShutdownSequence(Message::kCountdownEnded);
}

// A low battery shortens the count at most: it jumps down to the time that the battery has left,
// and from there on falls like any other.
void Countdown::CountDown() {
  if (state_.IsNormal(panel_.mains)) return;
  std::int32_t& countdown = state_.ShutdownCountdown;
  const std::int32_t low = BatteryLowDelay(state_);
  if (!state_.IsNormal(panel_.battery) && countdown > low) {
    countdown = low;
  } else {
    --countdown;
  }
}

// The phase is measured in ticks since the count began, not in seconds left: a count that a low
// battery has shortened does not reach it any sooner.
void Countdown::ShowAlertWhenDue() {
  MainFormState& form = state_.Main;
  const std::int32_t threshold =
      MainsFailureDelay(state_) - state_.Settings[kWarnMinutes] * kSecondsPerMinute;
  if (form.AlertSeconds <= threshold) return;
  // Without a period the alert is shown once, when the phase begins.
  const int period = state_.Settings[kWarnPeriod];
  const bool due = period == 0 ? form.AlertPeriods == 0 : form.AlertPeriods % period == 0;
  if (due) seams_.forms.Show(Form::kAlert);
  ++form.AlertPeriods;
}

}  // namespace orvane
