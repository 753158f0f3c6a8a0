// Virtual time for tests: a clock and timers that move only when a test says so, in exact order.
#pragma once

#include <algorithm>
#include <chrono>
#include <ctime>
#include <functional>
#include <vector>

#include "app/calendar.h"
#include "platform/clock.h"
#include "platform/timer.h"

namespace orvane::test {

class FakeTimer;

class FakeTime : public Clock {
 public:
  explicit FakeTime(LocalTime start = {2001, 2, 16, 9, 5, 33}) { SetWall(start); }

  LocalTime Now() const override {
    const std::time_t wall = SystemSeconds().time_since_epoch().count();
    std::tm at{};
    gmtime_r(&wall, &at);
    return {at.tm_year + 1900, at.tm_mon + 1, at.tm_mday, at.tm_hour, at.tm_min, at.tm_sec};
  }
  std::chrono::sys_seconds SystemSeconds() const override {
    return std::chrono::floor<std::chrono::seconds>(wall_);
  }

  // Time that passed since this object was made, whatever the wall says.
  std::chrono::milliseconds Steady() const { return steady_; }

  // Moves time on, running every tick that falls due, the earlier one first; of ticks due at the
  // same moment the timer made first.
  void Advance(std::chrono::milliseconds step);

  // Lets time pass in which nothing runs, as on a computer that is held up: what fell due meanwhile
  // ticks once, late, when time moves on.
  void Jump(std::chrono::milliseconds step) {
    steady_ += step;
    wall_ += step;
  }

  // Sets the clock on the wall; the steady clock and the timers take no notice.
  void SetWall(LocalTime now) {
    using namespace std::chrono;
    wall_ = sys_days{DateOf(now)} + hours(now.hour) + minutes(now.minute) + seconds(now.second);
  }

 private:
  friend class FakeTimer;

  std::chrono::milliseconds steady_{0};
  std::chrono::sys_time<std::chrono::milliseconds> wall_;
  std::vector<FakeTimer*> timers_;
};

class FakeTimer : public Timer {
 public:
  explicit FakeTimer(FakeTime& time) : time_(time) { time_.timers_.push_back(this); }
  ~FakeTimer() override { std::erase(time_.timers_, this); }

  // Runs in the place of a tick and gets it to run: a test that stands round the program.
  std::function<void(const std::function<void()>& tick)> Around;

  bool Enabled() const override { return enabled_; }
  void Enabled(bool enabled) override {
    if (enabled && !enabled_) Interval(interval_);
    enabled_ = enabled;
  }
  int Interval() const override { return interval_; }
  void Interval(int milliseconds) override {
    interval_ = milliseconds;
    due_ = time_.steady_ + std::chrono::milliseconds(interval_);
  }

 private:
  friend class FakeTime;

  FakeTime& time_;
  bool enabled_ = false;
  int interval_ = 1000;
  std::chrono::milliseconds due_{0};
};

inline void FakeTime::Advance(std::chrono::milliseconds step) {
  const std::chrono::milliseconds end = steady_ + step;
  // A handler may advance time itself, as a wait does; time never runs backwards.
  const auto move_to = [this](std::chrono::milliseconds now) {
    if (now > steady_) Jump(now - steady_);
  };
  for (;;) {
    FakeTimer* next = nullptr;
    for (FakeTimer* timer : timers_) {
      if (timer->enabled_ && timer->due_ <= end && (!next || timer->due_ < next->due_)) {
        next = timer;
      }
    }
    if (!next) break;
    move_to(next->due_);
    next->Interval(next->interval_);
    if (!next->Tick) continue;
    if (next->Around) {
      next->Around(next->Tick);
    } else {
      next->Tick();
    }
  }
  move_to(end);
}

}  // namespace orvane::test
