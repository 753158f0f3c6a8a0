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

  void Notify(bool on) override {
    notify_ = on;
    Announce();
  }
  bool Configure(std::string_view line) override {
    line_ = line;
    return true;
  }
  const std::string& Line() const { return line_; }

  int Number() const override { return number_; }
  bool Select(int number) override {
    if (open_ || number < 1 || number > 4) return false;
    number_ = number;
    return true;
  }

  bool IsOpen() const override { return open_; }
  bool Open() override {
    if (open_) return true;
    if (!present.contains(number_)) return false;
    waiting_.clear();
    return open_ = true;
  }
  void Close() override {
    waiting_.clear();
    open_ = false;
  }

  bool Write(std::string_view text) override {
    if (!open_ || refuse_writes) return false;
    sent.emplace_back(text);
    if (OnSent) OnSent(std::string(text));
    return true;
  }

  std::size_t Waiting() const override { return waiting_.size(); }
  void Read(std::string& text) override {
    text += waiting_;
    waiting_.clear();
  }
  void Discard() override { waiting_.clear(); }

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
    Close();
  }

  // All that was sent, as one text.
  std::string Wire() const { return std::accumulate(sent.begin(), sent.end(), std::string()); }

 private:
  void Announce() {
    if (notify_ && !waiting_.empty() && OnReceive) OnReceive();
  }

  std::string line_;
  int number_ = 1;
  bool open_ = false;
  bool notify_ = false;
  std::string waiting_;
};

}  // namespace orvane::test
