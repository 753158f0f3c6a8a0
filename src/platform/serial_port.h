// A line to a device: bytes both ways, by port number.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace orvane {

struct SerialPort {
  virtual ~SerialPort() = default;

  // Runs when bytes have arrived, from the event loop, while Notify says so.
  std::function<void()> OnReceive;

  // False: OnReceive never runs, and bytes that arrive wait. True: it runs for every arrival, and
  // for what waits already.
  virtual void Notify(bool on) = 0;

  // Line parameters as "baud,parity,data,stop", for example "2400,N,8,1". Takes effect at the next
  // opening. False, and no change, when the text is no such parameters.
  virtual bool Configure(std::string_view line) = 0;

  // Port number 1 to 4. Selecting one while a port is open is refused (false, no change), and so is
  // a number outside the range.
  virtual int Number() const = 0;
  virtual bool Select(int number) = 0;

  // Opening returns whether the port could be had; opening an open port succeeds and does nothing.
  // A device that vanishes closes its port by itself.
  virtual bool IsOpen() const = 0;
  virtual bool Open() = 0;
  virtual void Close() = 0;

  // Sends the whole text without waiting for it to leave. False when the port is not open or the
  // device refuses the write.
  virtual bool Write(std::string_view text) = 0;

  // Bytes received and not yet read.
  virtual std::size_t Waiting() const = 0;

  // Appends everything that waits to `text`, and forgets it.
  virtual void Read(std::string& text) = 0;

  // Throws away what waits.
  virtual void Discard() = 0;
};

}  // namespace orvane
