#include "simulate/line_pacer.h"

#include <algorithm>

namespace orvane {

LinePacer::LinePacer(int baud, std::size_t chunk)
    : byte_time_(std::chrono::nanoseconds(10'000'000'000) / baud), chunk_(chunk) {}

void LinePacer::Put(std::string_view bytes, Moment now) {
  if (waiting_.empty()) start_ = std::max<std::chrono::nanoseconds>(start_, now);
  waiting_ += bytes.substr(0, kBacklog - waiting_.size());
}

std::string LinePacer::Take(Moment now) {
  if (waiting_.empty() || now < ChunkEnd()) return {};
  start_ = ChunkEnd();
  std::string chunk = waiting_.substr(0, chunk_);
  waiting_.erase(0, chunk.size());
  return chunk;
}

std::optional<Moment> LinePacer::Next() const {
  if (waiting_.empty()) return std::nullopt;
  return std::chrono::ceil<Moment>(ChunkEnd());
}

std::chrono::nanoseconds LinePacer::ChunkEnd() const {
  return start_ + byte_time_ * static_cast<int>(std::min(chunk_, waiting_.size()));
}

}  // namespace orvane
