#include "link/battery_scale.h"

#include <cmath>

#include "link/numbers.h"

namespace orvane {
namespace {

constexpr float kMostOfACell = 3;
constexpr float kEmptyCell = 1.72F;
constexpr float kFullCell = 2.27F;

constexpr float kLeastOfACell = 1.4F;
constexpr float kMostOfACharge = 2.8F;

constexpr float kUsualBatteries[] = {12, 24, 36, 48, 72, 96, 192, 240};
// Volts on the mains for each nominal volt.
constexpr float kOnMains = 1.1F;

}  // namespace

bool IsWholeBattery(float figure) {
  return figure > kMostOfACell;
}

bool IsCell(float volts) {
  return volts >= kLeastOfACell && volts <= kMostOfACharge;
}

float UsualBattery(float volts) {
  float nearest = kUsualBatteries[0];
  for (const float battery : kUsualBatteries) {
    if (std::abs(volts / kOnMains - battery) < std::abs(volts / kOnMains - nearest)) {
      nearest = battery;
    }
  }
  return nearest;
}

int BatteryPercent(std::optional<float> cell_volts) {
  if (!cell_volts || *cell_volts > kFullCell) return 100;
  if (*cell_volts < kEmptyCell) return 0;
  return RoundHalfEven((static_cast<double>(*cell_volts) - 1.72) * 10000 / 55);
}

}  // namespace orvane
