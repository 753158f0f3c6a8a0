#include "platform/linux/linux_clock.h"

#include <algorithm>
#include <ctime>

namespace orvane {

using namespace std::chrono;

LocalTime LinuxClock::Now() const {
  // The program runs for months, in which the user may move to another time zone.
  tzset();
  const std::time_t now = system_clock::to_time_t(SystemSeconds());
  std::tm local{};
  localtime_r(&now, &local);
  // A leap second is shown as the second before it.
  return {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday,
          local.tm_hour,        local.tm_min,     std::min(local.tm_sec, 59)};
}

sys_seconds LinuxClock::SystemSeconds() const {
  return floor<seconds>(system_clock::now());
}

}  // namespace orvane
