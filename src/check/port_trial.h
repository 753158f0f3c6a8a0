// A look at the ports by somebody who does not watch the UPS: does one open, does a UPS answer?
#pragma once

#include <functional>
#include <string>

#include "app/state.h"
#include "platform/serial_port.h"
#include "platform/timer.h"

namespace orvane {

// Sends nothing but the status query, and leaves the port closed. Never tries the modem's port.
class PortTrial {
 public:
  // `timer` belongs to this object.
  PortTrial(const State& state, SerialPort& port, Timer& timer)
      : state_(state), port_(port), timer_(timer) {}

  // Asks on the port of the settings, or on one after the other where they say to search, three
  // times and 3.6 s on each. `on_done` runs once, from here where no port opens.
  void Begin(std::function<void()> on_done);

  int Opened() const { return opened_; }  // the port that answered, else the last that opened; or 0
  bool Answered() const { return answered_; }

 private:
  void TryNext();
  void Ask();
  void OnReceive();
  void End();

  const State& state_;
  SerialPort& port_;
  Timer& timer_;
  std::function<void()> on_done_;
  int next_ = 1;
  int last_ = 1;
  int asked_ = 0;
  int opened_ = 0;
  bool answered_ = false;
  std::string received_;
};

}  // namespace orvane
