// The lines of a journal.
#pragma once

#include <algorithm>
#include <string_view>

namespace orvane {

// Calls `take` with each line of `bytes`, without its end. A line ends at CR LF alone. What stands
// behind the last line end, if anything, is a line too.
template <typename Take>
void ForEachLine(std::string_view bytes, Take take) {
  constexpr std::string_view kEnd = "\r\n";
  while (!bytes.empty()) {
    const std::size_t size = std::min(bytes.find(kEnd), bytes.size());
    take(bytes.substr(0, size));
    bytes.remove_prefix(std::min(size + kEnd.size(), bytes.size()));
  }
}

}  // namespace orvane
