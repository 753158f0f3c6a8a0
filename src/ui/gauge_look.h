// What both faces of the main form say about a measured value.
#pragma once

#include <QString>
#include <cstddef>

#include "app/state.h"

namespace orvane {

// Part of a scale that nobody wants to see a value in: overload, battery nearly empty. Empty where
// a value has none. `index` as `Label2`.
struct Zone {
  double from = 0;
  double to = 0;
};
Zone DangerZone(std::size_t index);

// The value's name for a screen reader, in the language of this moment. `index` as `Label2`.
QString SpokenName(const State& state, std::size_t index);

// As it stands behind the figures. `index` as `Label2`.
QString Unit(std::size_t index);

}  // namespace orvane
