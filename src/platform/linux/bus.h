// Method calls on a message bus that never cost more time than their caller gives them: a bus that
// is absent, hangs or goes away in the middle is a failure like any other.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>

struct sd_bus;
struct sd_bus_message;

namespace orvane {

// The object that a method is called on.
struct BusObject {
  const char* destination;
  const char* path;
  const char* interface;
};

// A method call under way; `done` once an answer or a failure is there.
struct BusCall {
  BusCall() = default;
  BusCall(const BusCall&) = delete;
  BusCall& operator=(const BusCall&) = delete;
  ~BusCall();

  // The answer's first value where it is a string; else empty.
  std::string Text() const;

  bool Answered() const { return answer != nullptr; }

  bool done = false;
  std::string error;  // why it failed, in words
  sd_bus_message* answer = nullptr;
};

class Bus {
 public:
  using Time = std::chrono::steady_clock::time_point;
  enum class Which { kSystem, kUser };

  // Begins to connect and does not wait for it. Null, with the reason in `error`, when there is no
  // such bus.
  static std::unique_ptr<Bus> Open(Which which, std::string& error);

  ~Bus();
  Bus(const Bus&) = delete;
  Bus& operator=(const Bus&) = delete;

  // Puts a call on its way and does not wait for it. `fill` appends the arguments.
  std::shared_ptr<BusCall> Send(const BusObject& object, const char* member,
                                const std::function<void(sd_bus_message*)>& fill = {});

  // Serves the bus until `done` holds; false when `deadline` came first or the bus went away.
  bool Wait(const std::function<bool()>& done, Time deadline);

  // Send and Wait for one call. A call that is not answered in time has an error, too.
  std::shared_ptr<BusCall> Call(const BusObject& object, const char* member, Time deadline,
                                const std::function<void(sd_bus_message*)>& fill = {});

 private:
  explicit Bus(sd_bus* bus) : bus_(bus) {}

  sd_bus* bus_;
};

}  // namespace orvane
