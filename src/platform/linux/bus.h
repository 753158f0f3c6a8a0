// A connection to a message bus (D-Bus). Calls are sent at once and answered later; the answers are
// taken in either by Wait, for a caller with a deadline, or by the program's event loop, which
// calls Serve. A bus that is absent, hangs or goes away in the middle is a failure like any other.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>

struct sd_bus;
struct sd_bus_message;

namespace orvane {

// The object that a method is called on, or that a signal comes from.
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
  std::string error;       // why it failed, in words
  std::string error_name;  // the same as a D-Bus error name; empty when it never left
  sd_bus_message* answer = nullptr;
  std::function<void(const BusCall&)> on_done;
};

class Bus {
 public:
  using Time = std::chrono::steady_clock::time_point;
  using Fill = std::function<void(sd_bus_message*)>;
  enum class Which { kSystem, kUser };

  // Begins to connect and does not wait for it. Null, with the reason in `error`, when there is no
  // such bus.
  static std::unique_ptr<Bus> Open(Which which, std::string& error);

  ~Bus();
  Bus(const Bus&) = delete;
  Bus& operator=(const Bus&) = delete;

  // Puts a call on its way and does not wait for it. `fill` appends the arguments. `on_done` runs
  // once, when the call is answered or has failed: inside Serve or Wait, or inside Send itself when
  // the call cannot be sent. It must not destroy the bus.
  std::shared_ptr<BusCall> Send(const BusObject& object, const char* member, const Fill& fill = {},
                                std::function<void(const BusCall&)> on_done = {});

  // Has `on_signal` run, inside Serve or Wait, for each signal `member` of `object`, while the bus
  // lives; where `first` is given, for those alone whose first argument is this text. False when
  // the bus did not take the request.
  bool Subscribe(const BusObject& object, const char* member,
                 std::function<void(sd_bus_message*)> on_signal, const std::string& first = {});

  // The same for every message that the match rule `rule` lets through (D-Bus, Match
  // Rules).
  bool Match(const char* rule, std::function<void(sd_bus_message*)> on_message);

  // The library's own handle, for whoever offers an object on this bus.
  sd_bus* Handle() const { return bus_; }

  // Serves the bus until `done` holds; false when `deadline` came first or the bus went away.
  bool Wait(const std::function<bool()>& done, Time deadline);

  // Send and Wait for one call. A call that is not answered in time has an error, too.
  std::shared_ptr<BusCall> Call(const BusObject& object, const char* member, Time deadline,
                                const Fill& fill = {});

  // For an event loop: what to watch for, and Serve for when it comes. What there is to watch for
  // may change with every Serve and every Send; OnSend runs after a Send or Subscribe.
  int Descriptor() const;           // below 0 when the bus has gone
  bool WantsToWrite() const;        // Serve also when the descriptor can be written
  std::optional<Time> Due() const;  // Serve also at this time
  std::function<void()> OnSend;

  // Takes in what has arrived and runs what waits for it, without waiting for more; of a flood only
  // a part, and Due says at once that there is more. False when the bus has gone; the calls that
  // were under way have failed by then.
  bool Serve();

 private:
  explicit Bus(sd_bus* bus) : bus_(bus) {}

  sd_bus* bus_;
};

}  // namespace orvane
