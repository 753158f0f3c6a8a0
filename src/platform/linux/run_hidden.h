// Starting another program and waiting for it.
#pragma once

#include <chrono>
#include <string>

#include "platform/host.h"

namespace orvane {

class UnixServer;

// The host's operation of this name. The program runs in a session of its own, with nothing on its
// standard input and output; what it writes to standard error goes to that of this program. The
// peers of `meanwhile`, where there is one, are served all the while.
RunOutcome RunHidden(const std::string& path, std::chrono::milliseconds limit,
                     UnixServer* meanwhile = nullptr);

}  // namespace orvane
