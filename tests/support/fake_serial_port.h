// A serial port of tests: what was written stands in `sent`, what a device would say goes in by
// Receive.
#pragma once

#include <functional>
#include <numeric>
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

  bool Settings(std::string_view line) override {
    settings_ = line;
    return true;
  }
  const std::string& Settings() const { return settings_; }

  int CommPort() const override { return number_; }
  bool CommPort(int number) override {
    if (open_ || number < 1 || number > 4) return false;
    number_ = number;
    return true;
  }

  bool PortOpen() const override { return open_; }
  bool PortOpen(bool open) override {
    if (open && !open_ && !present.contains(number_)) return false;
    if (open != open_) waiting_.clear();
    open_ = open;
    return true;
  }

  bool Output(std::string_view text) override {
    if (!open_ || refuse_writes) return false;
    sent.emplace_back(text);
    if (OnSent) OnSent(std::string(text));
    return true;
  }

  void Input(std::string& text) override {
    text += waiting_;
    waiting_.clear();
  }
  std::size_t InBufferCount() const override { return waiting_.size(); }
  void ClearInBuffer() override { waiting_.clear(); }
  void RThreshold(int bytes) override {
    threshold_ = bytes;
    Announce();
  }
  int CommEvent() const override { return event_; }

  // Bytes arrive. Lost when the port is closed.
  void Receive(std::string_view bytes) {
    if (!open_) return;
    waiting_ += bytes;
    if (OnReceived) OnReceived(bytes);
    Announce();
  }

  // The device goes away: the port closes by itself and no port opens.
  void Unplug() {
    present.clear();
    open_ = false;
    waiting_.clear();
  }

  // All that was sent, as one text.
  std::string Wire() const { return std::accumulate(sent.begin(), sent.end(), std::string()); }

 private:
  void Announce() {
    if (threshold_ == 0 || waiting_.empty() || !OnComm) return;
    event_ = kCommEventReceive;
    OnComm();
    event_ = kCommEventNone;
  }

  std::string settings_;
  int number_ = 1;
  bool open_ = false;
  int threshold_ = 0;
  int event_ = kCommEventNone;
  std::string waiting_;
};

}  // namespace orvane::test
