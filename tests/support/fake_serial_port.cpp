#include "support/fake_serial_port.h"

namespace orvane::test {

bool FakeSerialPort::Settings(std::string_view line) {
  settings_ = line;
  return true;
}

bool FakeSerialPort::CommPort(int number) {
  if (open_ || number < 1 || number > 4) return false;
  number_ = number;
  return true;
}

bool FakeSerialPort::PortOpen(bool open) {
  if (open && !open_ && !present.contains(number_)) return false;
  if (open != open_) waiting_.clear();
  open_ = open;
  return true;
}

bool FakeSerialPort::Output(std::string_view text) {
  if (!open_ || refuse_writes) return false;
  sent.emplace_back(text);
  if (OnSent) OnSent(std::string(text));
  return true;
}

void FakeSerialPort::Input(std::string& text) {
  text += waiting_;
  waiting_.clear();
}

void FakeSerialPort::RThreshold(int bytes) {
  threshold_ = bytes;
  Announce();
}

void FakeSerialPort::Receive(std::string_view bytes) {
  if (!open_) return;
  waiting_ += bytes;
  if (OnReceived) OnReceived(bytes);
  Announce();
}

void FakeSerialPort::Unplug() {
  present.clear();
  open_ = false;
  waiting_.clear();
}

std::string FakeSerialPort::Wire() const {
  std::string wire;
  for (const std::string& text : sent) wire += text;
  return wire;
}

void FakeSerialPort::Announce() {
  if (threshold_ == 0 || waiting_.empty() || !OnComm) return;
  event_ = kCommEventReceive;
  OnComm();
  event_ = kCommEventNone;
}

}  // namespace orvane::test
