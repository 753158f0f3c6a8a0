// A history in memory.
#pragma once

#include <map>

#include "history/history.h"

namespace orvane::test {

class MemoryHistory : public HistoryStore {
 public:
  std::map<sys_seconds, Sample> kept;
  std::map<std::int64_t, Episode> episodes;
  int writes = 0;
  bool refuses = false;

  bool Write(const std::vector<Sample>& added, const std::vector<Episode>& changed) override {
    if (refuses) return false;
    ++writes;
    for (const Sample& sample : added) kept.try_emplace(sample.begin, sample);
    for (const Episode& episode : changed) episodes[episode.id] = episode;
    return true;
  }
  std::optional<sys_seconds> First() override {
    return kept.empty() ? std::nullopt : std::optional(kept.begin()->first);
  }
  std::int64_t LastEpisode() override { return episodes.empty() ? 0 : episodes.rbegin()->first; }
  std::vector<Sample> Samples(Step, sys_seconds from, sys_seconds to) override {
    std::vector<Sample> found;
    for (const auto& [begin, sample] : kept) {
      if (begin >= from && begin < to) found.push_back(sample);
    }
    return found;
  }
  std::vector<Episode> Episodes(sys_seconds from, sys_seconds to) override {
    std::vector<Episode> found;
    for (const auto& [id, episode] : episodes) {
      const bool over = episode.ending != Ending::kNotYet && episode.end < from;
      if (episode.begin < to && !over) found.push_back(episode);
    }
    return found;
  }
};

}  // namespace orvane::test
