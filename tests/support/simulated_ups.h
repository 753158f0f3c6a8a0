// A UPS on a test's serial port: hears what is written there and answers in virtual time, at the
// pace of a 2400 baud line.
#pragma once

#include <algorithm>

#include "simulate/line_pacer.h"
#include "simulate/ups_model.h"
#include "support/fake_serial_port.h"
#include "support/fake_time.h"

namespace orvane::test {

class SimulatedUps {
 public:
  SimulatedUps(FakeTime& time, FakeSerialPort& port) : time_(time), port_(port), timer_(time) {
    port_.OnSent = [this](const std::string& text) {
      Catch();
      ups_.Receive(text);
      Serve();
    };
    timer_.Tick = [this] {
      Catch();
      Serve();
    };
  }
  ~SimulatedUps() { port_.OnSent = nullptr; }
  SimulatedUps(const SimulatedUps&) = delete;
  SimulatedUps& operator=(const SimulatedUps&) = delete;

  // Gives the UPS an order at this moment: `Do([](UpsModel& ups) { ups.Mains(false); })`.
  template <class Order>
  void Do(Order order) {
    Catch();
    order(ups_);
    Serve();
  }

  const UpsModel& Ups() {
    Catch();
    return ups_;
  }

 private:
  void Catch() { ups_.Advance(time_.Steady()); }

  // Hands over what has arrived and comes back for the rest. Never inside the write that asks:
  // the first byte of an answer takes its time.
  void Serve() {
    const Moment now = time_.Steady();
    pacer_.Put(ups_.Take(), now);
    timer_.Enabled(false);
    std::string chunk = pacer_.Take(now);
    for (; !chunk.empty(); chunk = pacer_.Take(now)) port_.Receive(chunk);
    const auto said = ups_.Next();
    const auto arrives = pacer_.Next();
    if (!said && !arrives) return;
    const Moment next = std::min(said.value_or(Moment::max()), arrives.value_or(Moment::max()));
    timer_.Interval(static_cast<int>(
        std::clamp<Moment::rep>((next - now).count(), 1, std::chrono::hours(24) / Moment(1))));
    timer_.Enabled(true);
  }

  FakeTime& time_;
  FakeSerialPort& port_;
  FakeTimer timer_;
  UpsModel ups_;
  LinePacer pacer_{2400};
};

}  // namespace orvane::test
