// `orvane --check`: the protection check as text, without a window and without a display.
#pragma once

namespace orvane {

// Prints a line for each point, in the language of the settings, or of the session where there are
// none. Leaves the port alone where another Orvane runs on the same directory: whether the UPS
// answers is then told by the history that one keeps. Returns the exit code: 0 where all is green,
// 1 for amber, 2 for red. Takes some seconds at most.
int CheckProtection(int argc, char** argv);

}  // namespace orvane
