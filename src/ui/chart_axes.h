// The axes of the history's curves: a stretch of time from left to right, and values upwards.
#pragma once

#include <QString>
#include <vector>

#include "history/history.h"

namespace orvane {

struct TimeAxis {
  sys_seconds from, to;
  double left = 0, width = 1;  // logical pixels

  double XOf(sys_seconds time) const;
  // Of a place beside the axis, the nearer end.
  sys_seconds TimeAt(double x) const;
};

struct TimeTick {
  sys_seconds time;
  QString label;
};

// At round times of the local clock, as close as their labels let them stand.
std::vector<TimeTick> TicksOf(const TimeAxis& axis);

struct ValueScale {
  double low = 0, high = 1, step = 1;
  QString Label(double value) const;
};

// The scale of round figures that shows both values and at least `least` between its ends.
ValueScale ScaleOf(double low, double high, double least);

}  // namespace orvane
