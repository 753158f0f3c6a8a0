// The count to shutdown: what each second does while a fault stands.
#pragma once

#include "app/panel.h"
#include "app/seams.h"
#include "app/state.h"
#include "protect/shutdown.h"

namespace orvane {

// Reads what mains and battery do from the captions of their state lines and from nothing else. The
// status evaluation starts and stops the timer and clears the two tick counters.
class Countdown {
 public:
  Countdown(State& state, Panel& panel, Shutdown& shutdown, const Seams& seams)
      : state_(state), panel_(panel), shutdown_(shutdown), seams_(seams) {}

  // One second of the count. At 0 it runs the shutdown sequence, which blocks.
  void OnCountdown();

 private:
  void CountDown();
  void ShowAlertWhenDue();

  State& state_;
  Panel& panel_;
  Shutdown& shutdown_;
  Seams seams_;
};

}  // namespace orvane
