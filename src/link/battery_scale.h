// The charge of the battery from the figure of the status reply. Two forms of it are about: volts
// of one cell, and, above 3, volts of the whole battery.
//
// The scale is that of a lead-acid cell: 1.72 V is empty, 2.27 V full, and percent go evenly
// between. A battery of nominal voltage U has U / 2 cells. Which U that is, the user has said, or
// the UPS has, where its figure fits; else it is the usual battery whose figure on the mains,
// about 2.2 V a cell, lies nearest.
#pragma once

#include <optional>

namespace orvane {

// Whether a figure is the voltage of the whole battery.
bool IsWholeBattery(float figure);

// Whether a cell can have this voltage, from deeply discharged to charging.
bool IsCell(float volts);

// Nominal volts of the usual battery to which the voltage of a whole battery belongs.
float UsualBattery(float volts);

// Charge in percent, 0 to 100, from the volts of one cell. A figure that is no number counts as
// one above the scale.
int BatteryPercent(std::optional<float> cell_volts);

}  // namespace orvane
