// The timer control: a tick every `Interval` milliseconds while `Enabled`.
#pragma once

#include <functional>

namespace orvane {

struct Timer {
  virtual ~Timer() = default;

  // Runs at every tick, from the event loop: inside another handler only where that one stands in
  // an event loop of its own, as under an open message box.
  std::function<void()> Tick;

  virtual bool Enabled() const = 0;

  // Enabling an enabled timer changes nothing; enabling a disabled one starts a whole period.
  // After disabling no tick comes, not even one that was due already.
  virtual void Enabled(bool enabled) = 0;

  // Milliseconds, above 0. A new interval on an enabled timer starts a whole new period.
  virtual int Interval() const = 0;
  virtual void Interval(int milliseconds) = 0;
};

}  // namespace orvane
