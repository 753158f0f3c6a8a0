// The words of the main window that follow the language.
#pragma once

#include <string>

#include "app/panel.h"
#include "app/state.h"

namespace orvane {

// Writes every caption and tool tip of the main window in the language of this moment. The states
// themselves keep the language in which they were last set, but the link is set to "No Conn".
void SetCaptions(const State& state, Panel& panel);

// The text of the port line for a UPS port that is open, in the language of this moment. `port` as
// it is shown, 1 to 4.
std::string PortLine(const State& state, int port);

}  // namespace orvane
