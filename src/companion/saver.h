// The companion's work: has applications save and close, and reports which of them did.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <vector>

#include "companion/application.h"
#include "companion/desktop.h"

namespace orvane::companion {

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
