// The words of the main form that follow the language.
#pragma once

#include <string>

#include "app/panel.h"
#include "app/state.h"

namespace orvane {

// Writes every caption and tool tip of the main form in the language of `ResBase`. The states
// themselves keep the language in which they were last set, but `lblConnect` is set to "No Conn".
void SetCaptions(const State& state, Panel& panel);

// What `Label14` tells of a UPS port that is open, in the language of `ResBase`. `port` as it is
// shown, 1 to 4.
std::string PortLine(const State& state, int port);

}  // namespace orvane
