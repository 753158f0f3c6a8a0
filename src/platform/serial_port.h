// The serial control: one asynchronous serial line (start bit, data bits, stop bit), by port
// number.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace orvane {

// Values of CommEvent; only "data received" matters to this program.
inline constexpr int kCommEventNone = 0;
inline constexpr int kCommEventReceive = 2;

struct SerialPort {
  virtual ~SerialPort() = default;

  // Runs when bytes have arrived and RThreshold is above 0, from the event loop. CommEvent tells
  // why. Bytes that arrive while RThreshold is 0 wait; raising it to 1 announces them.
  std::function<void()> OnComm;

  // Line parameters as "baud,parity,data,stop", for example "2400,N,8,1". Takes effect at the next
  // opening. False, and no change, when the text is no such parameters.
  virtual bool Settings(std::string_view line) = 0;

  // Port number 1 to 4. Writing it on an open port is refused (false, no change), and so is a
  // number outside the range.
  virtual int CommPort() const = 0;
  virtual bool CommPort(int number) = 0;

  // Opening tells whether the port could be had; opening an open port and closing a closed one
  // succeed and do nothing. A device that vanishes closes its port by itself.
  virtual bool PortOpen() const = 0;
  virtual bool PortOpen(bool open) = 0;

  // Sends the whole text without waiting for it to leave. False when the port is not open or the
  // device refuses the write.
  virtual bool Output(std::string_view text) = 0;

  // Appends everything received and waiting to `text`, and forgets it. Leaves `text` alone when
  // nothing waits.
  virtual void Input(std::string& text) = 0;

  // Bytes received and waiting; writing 0 throws them away.
  virtual std::size_t InBufferCount() const = 0;
  virtual void ClearInBuffer() = 0;

  // 0: OnComm never runs. 1: it runs for every arrival.
  virtual void RThreshold(int bytes) = 0;

  // Why OnComm runs, while it runs.
  virtual int CommEvent() const = 0;
};

}  // namespace orvane
