// Runs a device on a pseudo-terminal in real time, taking orders on standard input and from a
// script, and writing down on standard output what happens.
#pragma once

#include <functional>
#include <optional>
#include <string_view>
#include <vector>

#include "simulate/device.h"
#include "simulate/orders.h"

namespace orvane {

// A word of the command line that only some simulators know, with a value behind it.
struct SimulatorOption {
  std::string_view name;
  std::string_view argument;                   // how the value is written in the help
  std::string_view help;                       // may have several lines
  std::function<bool(std::string_view)> take;  // false when the value is no good
};

struct SimulatorKind {
  std::string_view program;  // its file name
  std::string_view about;    // one sentence for --help
  int baud;                  // speed of the line, 8 data bits, no parity, 1 stop bit
  bool hid = false;          // knows --hid: the line as a USB chip carries it in HID reports
  std::vector<SimulatorOption> options = {};
  // What the options ask for in the place of the device, with the exit code of the program; nothing
  // when they do not.
  std::function<std::optional<int>()> instead = nullptr;
};

// The whole life of a simulator program. `orders` holds the orders to the device; those to the
// simulator itself ("plug", "unplug", "help", "quit") are added. Returns the program's exit code: 0
// at its proper end, 1 when it cannot run, 2 when it was called wrongly.
int RunSimulator(int argc, char** argv, const SimulatorKind& kind, Device& device,
                 OrderTable& orders);

}  // namespace orvane
