// Time as the program sees it: the clock on the wall, which may be set. Periods are kept by timers.
#pragma once

#include <chrono>
#include <compare>

namespace orvane {

// A moment of the local calendar (proleptic Gregorian), as the clock on the wall shows it.
struct LocalTime {
  int year = 1970;
  int month = 1;   // 1 to 12
  int day = 1;     // 1 to 31
  int hour = 0;    // 0 to 23
  int minute = 0;  // 0 to 59
  int second = 0;  // 0 to 59

  auto operator<=>(const LocalTime&) const = default;
};

struct Clock {
  virtual ~Clock() = default;

  // Local date and time of this moment. May jump either way when the clock is set or the summer
  // time begins or ends.
  virtual LocalTime Now() const = 0;

  // Whole seconds since 1970-01-01 00:00:00 UTC by the settable clock of the system.
  virtual std::chrono::sys_seconds SystemSeconds() const = 0;
};

}  // namespace orvane
