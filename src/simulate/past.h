// A past for the history: what two months might have brought a UPS, to look at without waiting for
// them.
#pragma once

#include "history/history.h"

namespace orvane {

// Writes the sixty days before the whole minute of `now`: days and nights, a sag every evening at
// seven by the local clock, self-tests, three mains failures with their discharges, the second of
// them to the way down, after which nothing is measured until the morning. The same `now` gives the
// same past. False when the store refuses.
bool WritePast(HistoryStore& store, sys_seconds now);

}  // namespace orvane
