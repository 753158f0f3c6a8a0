#include "history/outages.h"

#include <algorithm>

namespace orvane {
namespace {

// A smaller loss is lost in the rounding of the UPS.
constexpr std::int64_t kTellingLoss = 500;
constexpr std::chrono::seconds kTellingLength{60};
// Below it the UPS itself is most of the load.
constexpr std::int64_t kLeastLoad = 500;
constexpr double kFull = 10000;

}  // namespace

void Sample::Add(const PerGauge<std::int64_t>& reading) {
  Sample one{begin, 1, {}};
  for (const Gauge gauge : kGauges) {
    one.values[gauge] = {reading[gauge], reading[gauge], reading[gauge]};
  }
  Merge(one);
}

void Sample::Merge(const Sample& other) {
  for (const Gauge gauge : kGauges) {
    Spread& mine = values[gauge];
    const Spread& theirs = other.values[gauge];
    mine.least = readings ? std::min(mine.least, theirs.least) : theirs.least;
    mine.most = readings ? std::max(mine.most, theirs.most) : theirs.most;
    mine.sum += theirs.sum;
  }
  readings += other.readings;
}

OutageSums SumsOf(const std::vector<Episode>& episodes, sys_seconds from, sys_seconds to,
                  sys_seconds now) {
  OutageSums sums;
  for (const Episode& episode : episodes) {
    if (episode.kind != EpisodeKind::kMainsFailure) continue;
    const sys_seconds end = episode.ending == Ending::kNotYet ? now : episode.end;
    const auto length = std::min(end, to) - std::max(episode.begin, from);
    if (length < std::chrono::seconds(0)) continue;
    ++sums.number;
    sums.total += length;
    sums.longest = std::max<std::chrono::seconds>(sums.longest, length);
  }
  const auto whole = std::min(to, now) - from;
  if (whole.count() > 0) {
    sums.availability =
        100 * (1 - static_cast<double>(sums.total.count()) / static_cast<double>(whole.count()));
  }
  return sums;
}

std::optional<Endurance> EnduranceAt(const std::vector<Episode>& episodes, std::int64_t load) {
  Endurance endurance;
  double sum = 0;
  for (const Episode& episode : episodes) {
    if (episode.kind != EpisodeKind::kMainsFailure || episode.ending == Ending::kNotYet) continue;
    if (!episode.first_battery || !episode.lowest_battery || !episode.mean_load) continue;
    const std::int64_t lost = *episode.first_battery - *episode.lowest_battery;
    const auto length = episode.end - episode.begin;
    if (lost < kTellingLoss || length < kTellingLength) continue;
    const double at_its_load =
        kFull / static_cast<double>(lost) * static_cast<double>(length.count()) / 60;
    const double minutes = at_its_load *
                           static_cast<double>(std::max(*episode.mean_load, kLeastLoad)) /
                           static_cast<double>(std::max(load, kLeastLoad));
    endurance.least = endurance.discharges ? std::min(endurance.least, minutes) : minutes;
    endurance.most = std::max(endurance.most, minutes);
    sum += minutes;
    ++endurance.discharges;
  }
  if (endurance.discharges < 2) return std::nullopt;
  endurance.minutes = sum / endurance.discharges;
  return endurance;
}

}  // namespace orvane
