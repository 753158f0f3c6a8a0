// What the window program and the service do alike at their start.
#pragma once

#include <chrono>
#include <functional>
#include <memory>

#include "platform/host.h"
#include "platform/linux/platform_settings.h"

namespace orvane {

// As long as a status reply takes: 47 characters of ten bits at 2400 baud. The modem's answers are
// short.
inline constexpr std::chrono::milliseconds kUpsGather{196};
inline constexpr std::chrono::milliseconds kModemGather{0};

// Has the event loop run `serve` while there is something to read at `descriptor`.
std::shared_ptr<void> NotifyOf(int descriptor, std::function<void()> serve);

// Has the event loop run `work` when the running handler is over.
void PostToLoop(std::function<void()> work);

// Descriptors 0 to 2 are never a port or a file of ours, whoever closed them before the start.
void OccupyStandardDescriptors();

// Reports what in platform.ini is no such thing.
void ReportUnknown(const PlatformSettings& settings, Host& host);

}  // namespace orvane
