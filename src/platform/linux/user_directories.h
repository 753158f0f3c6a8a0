// The directories of the user who runs the program (XDG Base Directories). No slash at
// the end.
#pragma once

#include <string>

namespace orvane {

// Settings of programs, as those that start with the desktop: $XDG_CONFIG_HOME or ~/.config.
std::string ConfigDirectory();

// Data of programs: $XDG_DATA_HOME or ~/.local/share.
std::string DataDirectory();

// Makes the directory and those above it, for this user alone. True when the last one was not there
// before.
bool MakeDirectories(const std::string& path);

}  // namespace orvane
