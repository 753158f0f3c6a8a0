// The entry that has a program start with the desktop (XDG Autostart 0.5).
#pragma once

#include <string>

#include "platform/inspector.h"

namespace orvane {

// Whether the user's entry, or else that of the system, starts a program that is there; `program`
// gets its name as it stands there.
Autostart ReadAutostart(std::string& program);

// Writes the user's entry for the executable at `path`, or takes it away. False when that cannot be
// done.
bool WriteAutostart(bool on, const std::string& path);

}  // namespace orvane
