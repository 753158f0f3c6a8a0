// The needles of the panel.
#pragma once

#include "app/panel.h"
#include "app/state.h"

namespace orvane {

// Takes rest tip and length of the needles from where they stand. Before any SetGauge.
void CaptureNeedles(const Panel& panel, MainFormState& form);

// Moves one needle. `value` is in the gauge's unit and lies inside its scale: the caller limits it.
// Touches neither read-out nor bar.
void SetGauge(const MainFormState& form, Panel& panel, Gauge gauge, std::int16_t value);

}  // namespace orvane
