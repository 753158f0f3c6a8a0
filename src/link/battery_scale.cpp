#include "link/battery_scale.h"

#include <algorithm>
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
  return std::ranges::min(kUsualBatteries, {},
                          [volts](float battery) { return std::abs(volts / kOnMains - battery); });
}

int BatteryPercent(std::optional<float> cell_volts) {
  const float volts = std::clamp(cell_volts.value_or(kFullCell), kEmptyCell, kFullCell);
  return RoundHalfEven((static_cast<double>(volts) - 1.72) * 10000 / 55);
}

}  // namespace orvane
