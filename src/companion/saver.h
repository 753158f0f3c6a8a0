// The companion's work: has applications save and close, and reports which of them did.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <vector>

#include "companion/application.h"
#include "companion/desktop.h"

namespace orvane::companion {

inline constexpr std::chrono::seconds kMostPatience{31};

// How long applications are waited for, when the UPS has just been told to switch off after the
// delay of the settings (slot 7: 0 for 30 seconds, else minutes): at most kMostPatience, and so
// that the system has 15 s for its own way down, but never less than 5 s.
std::chrono::seconds PatienceFor(int shutdown_delay);

// The desktops of this session; more than one where X11 applications stand among others, none where
// there is nobody to ask.
std::vector<std::unique_ptr<Desktop>> OpenDesktops();

// Asks every application on `desktops` to close, but for those of this program, and waits until
// they have gone and written what they had to write, at most until `deadline`. The result lists
// them, and what else stands open in the end. `on_change` runs with what is known whenever an
// application has gone.
std::vector<Application> SaveAndClose(
    const std::vector<std::unique_ptr<Desktop>>& desktops,
    std::chrono::steady_clock::time_point deadline,
    const std::function<void(const std::vector<Application>&)>& on_change);

}  // namespace orvane::companion
