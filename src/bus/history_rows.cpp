#include "bus/history_rows.h"

#include <cstring>
#include <iterator>

namespace orvane {
namespace {

using std::chrono::seconds;

constexpr std::size_t kSampleNumbers = 2 + 3 * std::size(kGauges);
constexpr std::size_t kEpisodeNumbers = 13;

using Value = std::optional<std::int64_t> Episode::*;
constexpr Value kValues[] = {&Episode::first_battery, &Episode::lowest_battery,
                             &Episode::highest_load, &Episode::mean_load};

std::int64_t Number(sys_seconds time) {
  return time.time_since_epoch().count();
}

std::vector<std::int64_t> NumbersOf(std::string_view bytes) {
  std::vector<std::int64_t> numbers(bytes.size() / sizeof(std::int64_t));
  if (!numbers.empty()) {
    std::memcpy(numbers.data(), bytes.data(), numbers.size() * sizeof(std::int64_t));
  }
  return numbers;
}

}  // namespace

std::vector<std::int64_t> SampleRows(const std::vector<Sample>& samples) {
  std::vector<std::int64_t> rows;
  rows.reserve(samples.size() * kSampleNumbers);
  for (const Sample& sample : samples) {
    rows.insert(rows.end(), {Number(sample.begin), sample.readings});
    for (const Spread& spread : sample.values) {
      rows.insert(rows.end(), {spread.least, spread.sum, spread.most});
    }
  }
  return rows;
}

std::vector<std::int64_t> EpisodeRows(const std::vector<Episode>& episodes) {
  std::vector<std::int64_t> rows;
  rows.reserve(episodes.size() * kEpisodeNumbers);
  for (const Episode& episode : episodes) {
    rows.insert(rows.end(),
                {episode.id, static_cast<std::int64_t>(episode.kind), Number(episode.begin),
                 Number(episode.end), static_cast<std::int64_t>(episode.ending)});
    for (const Value value : kValues) {
      rows.insert(rows.end(), {(episode.*value).has_value(), (episode.*value).value_or(0)});
    }
  }
  return rows;
}

std::vector<Sample> SamplesOf(std::string_view bytes) {
  const auto numbers = NumbersOf(bytes);
  std::vector<Sample> samples;
  for (std::size_t at = 0; at + kSampleNumbers <= numbers.size(); at += kSampleNumbers) {
    const std::int64_t* next = &numbers[at];
    Sample& sample = samples.emplace_back();
    sample.begin = sys_seconds(seconds(*next++));
    sample.readings = *next++;
    for (Spread& spread : sample.values) {
      spread = {next[0], next[1], next[2]};
      next += 3;
    }
  }
  return samples;
}

std::vector<Episode> EpisodesOf(std::string_view bytes) {
  const auto numbers = NumbersOf(bytes);
  std::vector<Episode> episodes;
  for (std::size_t at = 0; at + kEpisodeNumbers <= numbers.size(); at += kEpisodeNumbers) {
    const std::int64_t* next = &numbers[at];
    Episode& episode = episodes.emplace_back();
    episode.id = next[0];
    episode.kind = static_cast<EpisodeKind>(next[1]);
    episode.begin = sys_seconds(seconds(next[2]));
    episode.end = sys_seconds(seconds(next[3]));
    episode.ending = static_cast<Ending>(next[4]);
    next += 5;
    for (const Value value : kValues) {
      if (next[0]) episode.*value = next[1];
      next += 2;
    }
  }
  return episodes;
}

}  // namespace orvane
