// Virtual time for tests: a clock and timers that move only when a test says so, in exact order.
#pragma once

#include <chrono>
#include <functional>
#include <vector>

#include "platform/clock.h"
#include "platform/timer.h"

namespace orvane::test {

class FakeTimer;

class FakeTime : public Clock {
 public:
  explicit FakeTime(LocalTime start = {2001, 2, 16, 9, 5, 33});

  LocalTime Now() const override;
  std::chrono::sys_seconds SystemSeconds() const override;

  // Time that passed since this object was made, whatever the wall says.
  std::chrono::milliseconds Steady() const { return steady_; }

  // Moves time on, running every tick that falls due, the earlier one first; of ticks due at the
  // same moment the timer made first.
  void Advance(std::chrono::milliseconds step);

  // Lets time pass in which nothing runs, as on a computer that is held up: what fell due meanwhile
  // ticks once, late, when time moves on.
  void Jump(std::chrono::milliseconds step);

  // Sets the clock on the wall; the steady clock and the timers take no notice.
  void SetWall(LocalTime now);

 private:
  friend class FakeTimer;

  std::chrono::milliseconds steady_{0};
  std::chrono::sys_time<std::chrono::milliseconds> wall_;
  std::vector<FakeTimer*> timers_;
};

class FakeTimer : public Timer {
 public:
  explicit FakeTimer(FakeTime& time);
  ~FakeTimer() override;

  // Runs in the place of a tick and gets it to run: a test that stands round the program.
  std::function<void(const std::function<void()>& tick)> Around;

  bool Enabled() const override { return enabled_; }
  void Enabled(bool enabled) override;
  int Interval() const override { return interval_; }
  void Interval(int milliseconds) override;

 private:
  friend class FakeTime;

  FakeTime& time_;
  bool enabled_ = false;
  int interval_ = 1000;
  std::chrono::milliseconds due_{0};
};

}  // namespace orvane::test
