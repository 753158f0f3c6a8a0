// What both faces of the main window say about a measured value.
#pragma once

#include <QString>

#include "app/state.h"

namespace orvane {

// The value's name in the names of widgets: "input".
QString Id(Gauge gauge);

// Part of a scale that nobody wants to see a value in: overload, battery nearly empty. Empty where
// a value has none.
struct Zone {
  double from = 0;
  double to = 0;
};
Zone DangerZone(Gauge gauge);

// The value's name for a screen reader, in the language of this moment.
QString SpokenName(const State& state, Gauge gauge);

// As it stands behind the figures.
QString Unit(Gauge gauge);

}  // namespace orvane
