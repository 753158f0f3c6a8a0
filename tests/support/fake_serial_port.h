// A serial port of tests: what was written stands in `sent`, what a device would say goes in by
// Receive.
#pragma once

#include <functional>
#include <set>
#include <string>
#include <vector>

#include "platform/serial_port.h"

namespace orvane::test {

class FakeSerialPort : public SerialPort {
 public:
  // Every text written, one element for each write.
  std::vector<std::string> sent;
  // Runs after each write, with its text: a device that answers.
  std::function<void(const std::string&)> OnSent;
  // Runs before the program is told of bytes that have arrived: a test that listens in.
  std::function<void(std::string_view)> OnReceived;
  // Port numbers that open.
  std::set<int> present = {1, 2, 3, 4};
  bool refuse_writes = false;

  bool Settings(std::string_view line) override;
  const std::string& Settings() const { return settings_; }
  int CommPort() const override { return number_; }
  bool CommPort(int number) override;
  bool PortOpen() const override { return open_; }
  bool PortOpen(bool open) override;
  bool Output(std::string_view text) override;
  void Input(std::string& text) override;
  std::size_t InBufferCount() const override { return waiting_.size(); }
  void ClearInBuffer() override { waiting_.clear(); }
  void RThreshold(int bytes) override;
  int CommEvent() const override { return event_; }

  // Bytes arrive. Lost when the port is closed.
  void Receive(std::string_view bytes);

  // The device goes away: the port closes by itself and no port opens.
  void Unplug();

  // All that was sent, as one text.
  std::string Wire() const;

 private:
  void Announce();

  std::string settings_;
  int number_ = 1;
  bool open_ = false;
  int threshold_ = 0;
  int event_ = kCommEventNone;
  std::string waiting_;
};

}  // namespace orvane::test
