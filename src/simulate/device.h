// A device at the far end of a serial line, as a plain object: bytes and time go in, bytes come
// out. The same object runs on a pseudo-terminal in real time and in a test in virtual time.
#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace orvane {

// Time since the simulation began.
using Moment = std::chrono::milliseconds;

enum class Trace {
  kCommand,  // a command has arrived, without its line end
  kReply,    // the device has spoken, without the line end
  kEvent,    // something has happened inside the device by itself
};

struct Device {
  virtual ~Device() = default;

  // Gets everything worth a line in the log of a trial. May be left empty.
  std::function<void(Trace kind, std::string_view text)> OnTrace;

  // Lets time pass up to `now`. A moment in the past changes nothing.
  virtual void Advance(Moment now) = 0;

  // Bytes arrive, in any pieces, at the moment of the last Advance.
  virtual void Receive(std::string_view bytes) = 0;

  // What the device has said up to the moment of the last Advance and not handed over before.
  virtual std::string Take() = 0;

  // The next moment at which the device does something by itself: speaks, or changes its state.
  // Nothing while it only waits for commands.
  virtual std::optional<Moment> Next() const = 0;
};

}  // namespace orvane
