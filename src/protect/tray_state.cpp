#include "protect/tray_state.h"

#include <string>

#include "app/settings.h"

namespace orvane {
namespace {

bool IsRed(const Label& line) {
  return line.ForeColor() == kRed;
}

}  // namespace

void TrayState::Update() {
  if (IsRed(panel_.link)) return Show(TrayFace::kSilent, Message::kTraySilent);
  if (IsRed(panel_.mains)) {
    return ShowCount(IsRed(panel_.battery) ? Message::kTrayLowCount : Message::kTrayCount);
  }
  if (IsRed(panel_.ups)) return Show(TrayFace::kFault, Message::kTrayUpsFault);
  if (IsRed(panel_.battery)) return Show(TrayFace::kFault, Message::kTrayBatteryLow);
  Show(TrayFace::kMains, Message::kTrayMains);
}

void TrayState::TellGoingDown() {
  Show(TrayFace::kBattery, Message::kTrayWayDown);
}

void TrayState::Show(TrayFace face, Message tip) {
  panel_.tray.Show(face, std::string(state_.Text(tip)));
}

void TrayState::ShowCount(Message tip) {
  const bool counts = seams_.timers.countdown_timer.Enabled();
  if (!counts) return Show(TrayFace::kBattery, Message::kTrayFailure);
  const bool begun = state_.Main.AlertSeconds > 0;
  const int left = begun ? state_.ShutdownCountdown : MainsFailureDelay(state_);
  panel_.tray.Show(TrayFace::kBattery, Fill(state_.Text(tip), {std::to_string(left)}));
}

}  // namespace orvane
