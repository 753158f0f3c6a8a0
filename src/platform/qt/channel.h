// The way of bytes to and from one kind of device.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace orvane {

struct Channel {
  virtual ~Channel() = default;

  // Runs from the event loop when bytes have arrived while the channel rests; once for each Rest
  // that asks for it.
  std::function<void()> OnArrival;

  // Runs, also inside the other operations, when the device is gone or refuses to work. The channel
  // is not to be closed in it.
  std::function<void()> OnLoss;

  // Opens the device for this program alone. False when it cannot be had or is of another kind.
  virtual bool Open(const std::string& device) = 0;

  // What has not left yet may be lost. Closing a closed channel does nothing.
  virtual void Close() = 0;

  // Sends the whole text without waiting for it to leave. False when it is refused.
  virtual bool Write(std::string_view text) = 0;

  // Appends what has arrived to `text`, `room` bytes at most; the rest is lost.
  virtual void Take(std::string& text, std::size_t room) = 0;

  // From here on the next arrival is reported.
  virtual void Rest() = 0;
};

}  // namespace orvane
