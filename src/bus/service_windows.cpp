#include "bus/service_windows.h"

#include <algorithm>
#include <utility>

namespace orvane {

void ServiceWindows::Show(Form which) {
  if (which == Form::kMain) {
    if (form->Load()) form->Activate();
  } else if (which == Form::kAlert) {
    if (!form->Alert().Showing()) form->Alert().Load();
    alert_told_ = true;
    Report("the computer goes down in " + std::to_string(form->Shown().ShutdownCountdown) + " s");
    Tell("Show", which);
  }
}

void ServiceWindows::Hide(Form which) {
  Tell("Hide", which);
}

void ServiceWindows::Unload(Form which) {
  if (which == Form::kMain) return form->Unload();
  if (which == Form::kAlert) {
    form->Alert().Unload();
    // The engine does so with every reply, and none of them is to wake a window up.
    if (!std::exchange(alert_told_, false)) return;
  }
  Tell("Unload", which);
}

void ServiceWindows::Dismiss() {
  Tell("Dismiss", Form::kMain);
}

void ServiceWindows::Exclamation(std::string_view text, std::string_view title) {
  std::string line(text);
  std::replace(line.begin(), line.end(), '\r', ' ');
  Report(line);
  if (TellBox) TellBox(text, title);
}

std::string StatusInWords(const State& state, const Panel& panel) {
  if (panel.link.ForeColor() == kRed) return "no answer from the UPS";
  std::string text = "mains normal";
  if (panel.mains.ForeColor() == kRed) {
    text = "on battery, " + std::to_string(state.ShutdownCountdown) + " s left";
  }
  if (panel.battery.ForeColor() == kRed) text += ", battery low";
  if (panel.ups.ForeColor() == kRed) text += ", UPS fault";
  return text;
}

}  // namespace orvane
