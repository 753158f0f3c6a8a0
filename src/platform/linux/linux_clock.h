// The clocks of the system.
#pragma once

#include "platform/clock.h"

namespace orvane {

class LinuxClock : public Clock {
 public:
  LocalTime Now() const override;
  std::chrono::sys_seconds SystemSeconds() const override;
};

}  // namespace orvane
