// Runs a device on a pseudo-terminal in real time, taking orders on standard input and from a
// script, and writing down on standard output what happens.
#pragma once

#include <string_view>

#include "simulate/device.h"
#include "simulate/orders.h"

namespace orvane {

struct SimulatorKind {
  std::string_view program;  // its file name
  std::string_view about;    // one sentence for --help
  int baud;                  // speed of the line, 8 data bits, no parity, 1 stop bit
};

// The whole life of a simulator program. `orders` holds the orders to the device; those to the
// simulator itself ("plug", "unplug", "help", "quit") are added. Returns the program's exit code: 0
// at its proper end, 1 when it cannot run, 2 when it was called wrongly.
int RunSimulator(int argc, char** argv, const SimulatorKind& kind, Device& device,
                 OrderTable& orders);

}  // namespace orvane
