#include "app/patience.h"

#include <algorithm>

namespace orvane {
namespace {

constexpr std::chrono::seconds kLeastPatience{5};
constexpr std::chrono::seconds kMostPatience{31};
constexpr std::chrono::seconds kWayDown{15};  // of the system, once it has been asked for
constexpr std::chrono::seconds kShortestDelay{30};

}  // namespace

std::chrono::seconds UpsDelay(int shutdown_delay) {
  return shutdown_delay > 0 ? std::chrono::minutes(shutdown_delay) : kShortestDelay;
}

std::chrono::seconds PatienceFor(int shutdown_delay) {
  return std::clamp(UpsDelay(shutdown_delay) - kWayDown, kLeastPatience, kMostPatience);
}

}  // namespace orvane
