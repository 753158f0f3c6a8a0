#include "support/fake_time.h"

#include <algorithm>

namespace orvane::test {

FakeTime::FakeTime(LocalTime start) {
  SetWall(start);
}

LocalTime FakeTime::Now() const {
  using namespace std::chrono;
  const auto midnight = floor<days>(wall_);
  const year_month_day date{midnight};
  const hh_mm_ss time{floor<seconds>(wall_ - midnight)};
  return {static_cast<int>(date.year()),
          static_cast<int>(static_cast<unsigned>(date.month())),
          static_cast<int>(static_cast<unsigned>(date.day())),
          static_cast<int>(time.hours().count()),
          static_cast<int>(time.minutes().count()),
          static_cast<int>(time.seconds().count())};
}

std::chrono::sys_seconds FakeTime::SystemSeconds() const {
  return std::chrono::floor<std::chrono::seconds>(wall_);
}

void FakeTime::Advance(std::chrono::milliseconds step) {
  const std::chrono::milliseconds end = steady_ + step;
  for (;;) {
    FakeTimer* next = nullptr;
    for (FakeTimer* timer : timers_) {
      if (timer->enabled_ && timer->due_ <= end && (!next || timer->due_ < next->due_)) {
        next = timer;
      }
    }
    if (!next) break;
    // A handler may advance time itself, as a wait does; time never runs backwards.
    const std::chrono::milliseconds now = std::max(steady_, next->due_);
    wall_ += now - steady_;
    steady_ = now;
    next->due_ = now + std::chrono::milliseconds(next->interval_);
    if (!next->Tick) continue;
    if (next->Around) {
      next->Around(next->Tick);
    } else {
      next->Tick();
    }
  }
  if (end > steady_) {
    wall_ += end - steady_;
    steady_ = end;
  }
}

void FakeTime::Jump(std::chrono::milliseconds step) {
  steady_ += step;
  wall_ += step;
}

void FakeTime::SetWall(LocalTime now) {
  using namespace std::chrono;
  const sys_days date = year{now.year} / now.month / now.day;
  wall_ = date + hours(now.hour) + minutes(now.minute) + seconds(now.second);
}

FakeTimer::FakeTimer(FakeTime& time) : time_(time) {
  time_.timers_.push_back(this);
}

FakeTimer::~FakeTimer() {
  std::erase(time_.timers_, this);
}

void FakeTimer::Enabled(bool enabled) {
  if (enabled && !enabled_) due_ = time_.steady_ + std::chrono::milliseconds(interval_);
  enabled_ = enabled;
}

void FakeTimer::Interval(int milliseconds) {
  interval_ = milliseconds;
  due_ = time_.steady_ + std::chrono::milliseconds(interval_);
}

}  // namespace orvane::test
