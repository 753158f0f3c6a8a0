// What the mains failures of a time come to, and what the discharges among them teach.
#pragma once

#include "history/history.h"

namespace orvane {

struct OutageSums {
  int number = 0;
  std::chrono::seconds total{0}, longest{0};
  double availability = 100;  // percent of [from, to) without mains failure
};

// Only what of an outage lies in [from, to) counts; one that lasts counts until `now`.
OutageSums SumsOf(const std::vector<Episode>& episodes, sys_seconds from, sys_seconds to,
                  sys_seconds now);

// How long a full battery lasts at a load.
struct Endurance {
  double minutes = 0, least = 0, most = 0;
  int discharges = 0;
};

// By the mains failures in which the battery lost enough to tell, each taken to the load of this
// moment in proportion. `load` in hundredths of a percent. Nothing from fewer than two.
std::optional<Endurance> EnduranceAt(const std::vector<Episode>& episodes, std::int64_t load);

}  // namespace orvane
