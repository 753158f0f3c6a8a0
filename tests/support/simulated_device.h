// A simulated device on a test's serial port: hears what is written there and answers in virtual
// time, at the pace of the line.
#pragma once

#include <algorithm>

#include "simulate/line_pacer.h"
#include "simulate/modem_model.h"
#include "simulate/ups_model.h"
#include "support/fake_serial_port.h"
#include "support/fake_time.h"

namespace orvane::test {

template <class Model, int kBaud>
class SimulatedDevice {
 public:
  SimulatedDevice(FakeTime& time, FakeSerialPort& port) : time_(time), port_(port), timer_(time) {
    port_.OnSent = [this](const std::string& text) {
      Catch();
      device_.Receive(text);
      Arm();
    };
    timer_.Tick = [this] {
      Catch();
      Serve();
    };
  }
  ~SimulatedDevice() { port_.OnSent = nullptr; }
  SimulatedDevice(const SimulatedDevice&) = delete;
  SimulatedDevice& operator=(const SimulatedDevice&) = delete;

  // Gives the device an order at this moment: `Do([](UpsModel& ups) { ups.Mains(false); })`.
  template <class Order>
  void Do(Order order) {
    Catch();
    order(device_);
    Serve();
  }

  // The device as it stands at this moment.
  const Model& Now() {
    Catch();
    return device_;
  }

 private:
  void Catch() { device_.Advance(time_.Steady()); }

  // Hands over what has arrived and comes back for the rest.
  void Serve() {
    const Moment now = time_.Steady();
    pacer_.Put(device_.Take(), now);
    std::string chunk = pacer_.Take(now);
    for (; !chunk.empty(); chunk = pacer_.Take(now)) port_.Receive(chunk);
    Arm();
  }

  // Nothing is handed over inside a write: the program is at work there.
  void Arm() {
    const Moment now = time_.Steady();
    pacer_.Put(device_.Take(), now);
    timer_.Enabled(false);
    const auto said = device_.Next();
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
  Model device_;
  LinePacer pacer_{kBaud};
};

using SimulatedUps = SimulatedDevice<UpsModel, 2400>;
using SimulatedModem = SimulatedDevice<ModemModel, 9600>;

}  // namespace orvane::test
