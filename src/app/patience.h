// The time between the shutdown command of the UPS and the end of its power, and how it is shared.
#pragma once

#include <chrono>

namespace orvane {

// The delay that the UPS is told: 30 s for 0 of slot 7 of the settings, else as many minutes.
std::chrono::seconds UpsDelay(int shutdown_delay);

// How long applications are waited for, when the UPS has just been told to switch off after the
// delay of the settings (slot 7: 0 for 30 seconds, else minutes): at most 31 s, and so
// that the system has 15 s for its own way down, but never less than 5 s.
std::chrono::seconds PatienceFor(int shutdown_delay);

}  // namespace orvane
