// The way of bytes along a serial line: one after the other at the line's speed, handed over in
// chunks by the receiver's UART or USB chip.
#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "simulate/device.h"

namespace orvane {

class LinePacer {
 public:
  static constexpr std::size_t kFifo = 16;  // of a UART
  // Bytes that may wait for the line; what a device says beyond that is lost.
  static constexpr std::size_t kBacklog = 512;

  // `baud` and `chunk`, the most bytes that are handed over together, above 0. A byte takes ten
  // bits: start, eight data bits, stop.
  explicit LinePacer(int baud, std::size_t chunk = kFifo);

  // The device says `bytes`.
  void Put(std::string_view bytes, Moment now);

  // The next chunk that has arrived whole at `now`, empty when there is none. A chunk is whole when
  // it is full or nothing follows on the line.
  std::string Take(Moment now);

  // When the next chunk will be whole; nothing when the line is idle.
  std::optional<Moment> Next() const;

  // Everything on the way is lost, as when the cable is pulled.
  void Clear() { waiting_.clear(); }

 private:
  std::chrono::nanoseconds ChunkEnd() const;

  std::chrono::nanoseconds byte_time_;
  std::size_t chunk_;
  std::chrono::nanoseconds start_{0};  // when the first byte of `waiting_` began its way
  std::string waiting_;
};

}  // namespace orvane
