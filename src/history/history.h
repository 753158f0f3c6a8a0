// What is kept of the past: the measured values by minute and by hour, and the episodes. And the
// seams over it: who shows it reads a HistorySource, who writes it has a HistoryStore.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <vector>

#include "app/panel.h"

namespace orvane {

using std::chrono::sys_seconds;

// The values of a span of time, in hundredths of the gauge's unit. The mean is `sum` by the number
// of readings.
struct Spread {
  std::int64_t least = 0;
  std::int64_t sum = 0;
  std::int64_t most = 0;
  bool operator==(const Spread&) const = default;
};

// A minute or an hour in which at least one reading was taken. One without is no sample.
struct Sample {
  sys_seconds begin;          // on a whole minute or hour
  std::int64_t readings = 0;  // at least 1
  PerGauge<Spread> values;
  bool operator==(const Sample&) const = default;

  void Add(const PerGauge<std::int64_t>& reading);
  void Merge(const Sample& other);
};

enum class Step { kMinute, kHour };

// The numbers stand in the file.
enum class EpisodeKind {
  kMainsFailure,
  kBatteryLow,
  kUpsFault,
  kBypass,
  kOverload,
  kLinkLoss,
  kSelfTest,
  kWayDown
};
inline constexpr std::size_t kEpisodeKinds = 8;
template <class T>
using PerEpisodeKind = EnumArray<EpisodeKind, T, kEpisodeKinds>;

// How an episode ended. The numbers stand in the file.
enum class Ending {
  kNotYet,
  kOver,      // seen to end
  kUnknown,   // it was lost sight of: link, program or clock
  kShutdown,  // the way down began
};

struct Episode {
  std::int64_t id = 0;  // above 0, in the order of the beginnings
  EpisodeKind kind = EpisodeKind::kMainsFailure;
  sys_seconds begin;
  sys_seconds end;  // with kNotYet: of no meaning
  Ending ending = Ending::kNotYet;
  // In hundredths of a percent; nothing where no reading was taken.
  std::optional<std::int64_t> first_battery, lowest_battery, highest_load, mean_load;
  bool operator==(const Episode&) const = default;
};

struct HistorySource {
  virtual ~HistorySource() = default;

  // What lies in [from, to), in order of time; an episode, if any part of it does. Empty if the
  // history cannot be read.
  virtual std::vector<Sample> Samples(Step step, sys_seconds from, sys_seconds to) = 0;
  virtual std::vector<Episode> Episodes(sys_seconds from, sys_seconds to) = 0;

  // The begin of the oldest hour; nothing of an empty history.
  virtual std::optional<sys_seconds> First() = 0;
};

struct HistoryStore : HistorySource {
  // Writes all of it or nothing, and tells which. A minute that is there already stays as it is; a
  // new one also counts for its hour. An episode takes the place of the one with its number.
  virtual bool Write(const std::vector<Sample>& minutes, const std::vector<Episode>& episodes) = 0;

  // The highest number of an episode, 0 without any.
  virtual std::int64_t LastEpisode() = 0;
};

inline constexpr int kKeptMinutes = 40 * 24 * 60;
inline constexpr int kKeptHours = 10 * 366 * 24;
inline constexpr int kKeptEpisodes = 20000;

}  // namespace orvane
