#include "records/log_index.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>

namespace orvane {
namespace {

constexpr std::string_view kLineEnd = "\r\n";

// Small enough to be searched between two frames, large enough for a short list of counts.
constexpr std::size_t kBlock = std::size_t{4} * 1024;

// Line ends whose first byte is one of the first `length` bytes, of one block at most; one byte
// more must be readable.
std::size_t CountLineEnds(const char* bytes, std::size_t length) {
  // Many counts side by side, each in a byte, which the processor can add up all at once.
  constexpr std::size_t kLanes = 64;
  static_assert(kBlock / kLanes <= std::numeric_limits<std::uint8_t>::max());
  std::size_t at = 0;
  std::array<std::uint8_t, kLanes> lanes{};
  for (; length - at >= kLanes; at += kLanes) {
    for (std::size_t lane = 0; lane < kLanes; ++lane) {
      const bool end = (bytes[at + lane] == '\r') & (bytes[at + lane + 1] == '\n');
      lanes[lane] = static_cast<std::uint8_t>(lanes[lane] + (end ? 1 : 0));
    }
  }
  std::size_t count = 0;
  for (const std::uint8_t lane : lanes) count += lane;
  for (; at < length; ++at) {
    if (bytes[at] == '\r' && bytes[at + 1] == '\n') ++count;
  }
  return count;
}

}  // namespace

LogIndex::LogIndex(std::string_view bytes) : bytes_(bytes) {
  if (bytes.empty()) return;
  // The last byte begins no line end, so that every block has a byte behind it.
  const std::size_t length = bytes.size() - 1;
  ends_through_.reserve(length / kBlock + 1);
  std::size_t ends = 0;
  for (std::size_t at = 0; at < length; at += kBlock) {
    ends += CountLineEnds(bytes.data() + at, std::min(kBlock, length - at));
    ends_through_.push_back(ends);
  }
  lines_ = bytes.ends_with(kLineEnd) ? ends : ends + 1;
}

std::string_view LogIndex::Line(std::size_t number) const {
  const std::size_t begin = number == 0 ? 0 : LineEnd(number - 1) + kLineEnd.size();
  return bytes_.substr(begin, LineEnd(number) - begin);
}

// Where the line end of a line stands: the end of the file for a last line that has none.
std::size_t LogIndex::LineEnd(std::size_t number) const {
  const auto block = std::upper_bound(ends_through_.begin(), ends_through_.end(), number);
  if (block == ends_through_.end()) return bytes_.size();
  const std::size_t before = block == ends_through_.begin() ? 0 : *(block - 1);
  std::size_t at = static_cast<std::size_t>(block - ends_through_.begin()) * kBlock;
  for (std::size_t skip = number - before;; --skip) {
    at = bytes_.find(kLineEnd, at);
    if (skip == 0) return at;
    at += kLineEnd.size();
  }
}

}  // namespace orvane
