// Starting another program and waiting for it.
#pragma once

#include <chrono>
#include <string>

#include "platform/host.h"

namespace orvane {

// The host's operation of this name. The program runs in a session of its own, with nothing on its
// standard input and output; what it writes to standard error goes to that of this program.
RunOutcome RunHidden(const std::string& path, std::chrono::milliseconds limit);

}  // namespace orvane
