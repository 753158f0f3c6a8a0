// Samples and episodes as rows of numbers, in the byte order of this machine.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "history/history.h"

namespace orvane {

// Of a sample: begin, readings, and of each gauge least, sum and most. Times are in seconds since
// 1970.
std::vector<std::int64_t> SampleRows(const std::vector<Sample>& samples);

// Of an episode: number, kind, begin, end, ending, and of first and lowest battery, highest and
// mean load whether it is known, and the value.
std::vector<std::int64_t> EpisodeRows(const std::vector<Episode>& episodes);

// The way back, from the bytes of the rows. What is no row any more is dropped.
std::vector<Sample> SamplesOf(std::string_view bytes);
std::vector<Episode> EpisodesOf(std::string_view bytes);

}  // namespace orvane
