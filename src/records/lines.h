// The lines of a journal.
#pragma once

#include <cstring>
#include <string_view>

namespace orvane {

// Calls `take` with each line of `bytes`, without its end. A line ends at CR LF alone. What stands
// behind the last line end, if anything, is a line too.
template <typename Take>
void ForEachLine(std::string_view bytes, Take take) {
  const char* line = bytes.data();
  const char* at = line;
  const char* const end = line + bytes.size();
  while (at < end) {
    const void* found = std::memchr(at, '\r', static_cast<std::size_t>(end - at));
    if (!found) break;
    const auto* const line_end = static_cast<const char*>(found);
    at = line_end + 1;
    if (at == end || *at != '\n') continue;
    take(std::string_view(line, static_cast<std::size_t>(line_end - line)));
    line = ++at;
  }
  if (line < end) take(std::string_view(line, static_cast<std::size_t>(end - line)));
}

}  // namespace orvane
