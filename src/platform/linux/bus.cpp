#include "platform/linux/bus.h"

#include <poll.h>
#include <systemd/sd-bus.h>

#include <cerrno>
#include <cstring>
#include <limits>
#include <utility>

namespace orvane {
namespace {

constexpr const char* kNoAnswer = "no answer in time";

// The library's own time-out never comes first: whoever waits has the deadline.
constexpr std::uint64_t kForEver = std::numeric_limits<std::uint64_t>::max();

// Whoever floods the bus has it served for no longer than this before the event loop goes on.
constexpr std::chrono::milliseconds kTurn{20};

// What the library keeps for a call or a subscription, until it has let go of it.
using CallHolder = std::shared_ptr<BusCall>;
using SignalHandler = std::function<void(sd_bus_message*)>;

template <class T>
void Release(void* data) {
  delete static_cast<T*>(data);
}

// Leaves the slot, and `holder` with it, to the bus.
template <class T>
void LeaveToBus(sd_bus_slot* slot, T*) {
  sd_bus_slot_set_destroy_callback(slot, Release<T>);
  sd_bus_slot_set_floating(slot, 1);
  sd_bus_slot_unref(slot);
}

void Finish(BusCall& call) {
  call.done = true;
  if (const auto on_done = std::exchange(call.on_done, nullptr)) on_done(call);
}

int TakeAnswer(sd_bus_message* message, void* data, sd_bus_error*) {
  const CallHolder call = *static_cast<CallHolder*>(data);
  if (const sd_bus_error* error = sd_bus_message_get_error(message)) {
    call->error_name = error->name;
    call->error = error->message && *error->message ? error->message : error->name;
  } else {
    call->answer = sd_bus_message_ref(message);
  }
  Finish(*call);
  return 0;
}

int TakeSignal(sd_bus_message* message, void* data, sd_bus_error*) {
  (*static_cast<SignalHandler*>(data))(message);
  return 0;
}

}  // namespace

BusCall::~BusCall() {
  sd_bus_message_unref(answer);
}

std::string BusCall::Text() const {
  const char* text = nullptr;
  if (!answer || sd_bus_message_rewind(answer, true) < 0 ||
      sd_bus_message_read(answer, "s", &text) <= 0) {
    return "";
  }
  return text;
}

std::unique_ptr<Bus> Bus::Open(Which which, std::string& error) {
  sd_bus* bus = nullptr;
  const int result = which == Which::kSystem ? sd_bus_open_system(&bus) : sd_bus_open_user(&bus);
  if (result < 0) {
    error = std::strerror(-result);
    return nullptr;
  }
  return std::unique_ptr<Bus>(new Bus(bus));
}

Bus::~Bus() {
  sd_bus_close_unref(bus_);
}

std::shared_ptr<BusCall> Bus::Send(const BusObject& object, const char* member, const Fill& fill,
                                   std::function<void(const BusCall&)> on_done) {
  auto call = std::make_shared<BusCall>();
  call->on_done = std::move(on_done);
  sd_bus_message* message = nullptr;
  int result = sd_bus_message_new_method_call(bus_, &message, object.destination, object.path,
                                              object.interface, member);
  if (result >= 0) {
    if (fill) fill(message);
    sd_bus_slot* slot = nullptr;
    auto* holder = new CallHolder(call);
    result = sd_bus_call_async(bus_, &slot, message, TakeAnswer, holder, kForEver);
    if (result < 0) {
      delete holder;
    } else {
      LeaveToBus(slot, holder);
    }
  }
  sd_bus_message_unref(message);
  if (result < 0) {
    call->error = std::strerror(-result);
    Finish(*call);
  }
  if (OnSend) OnSend();
  return call;
}

bool Bus::Subscribe(const BusObject& object, const char* member, SignalHandler on_signal,
                    const std::string& first) {
  sd_bus_slot* slot = nullptr;
  auto* holder = new SignalHandler(std::move(on_signal));
  std::string rule = std::string("type='signal',sender='") + object.destination + "',path='" +
                     object.path + "',interface='" + object.interface + "',member='" + member +
                     '\'';
  if (!first.empty()) rule += ",arg0='" + first + '\'';
  const int result = sd_bus_add_match_async(bus_, &slot, rule.c_str(), TakeSignal, nullptr, holder);
  if (result < 0) {
    delete holder;
    return false;
  }
  LeaveToBus(slot, holder);
  if (OnSend) OnSend();
  return true;
}

bool Bus::Match(const char* rule, SignalHandler on_message) {
  sd_bus_slot* slot = nullptr;
  auto* holder = new SignalHandler(std::move(on_message));
  if (sd_bus_add_match_async(bus_, &slot, rule, TakeSignal, nullptr, holder) < 0) {
    delete holder;
    return false;
  }
  LeaveToBus(slot, holder);
  if (OnSend) OnSend();
  return true;
}

bool Bus::Wait(const std::function<bool()>& done, Time deadline) {
  while (!done()) {
    const int served = sd_bus_process(bus_, nullptr);
    if (served < 0) return false;
    const auto left = std::chrono::duration_cast<std::chrono::microseconds>(
        deadline - std::chrono::steady_clock::now());
    if (left.count() <= 0) return done();
    if (served > 0) continue;
    // A signal ends this wait, whatever its handler asked for, but not ours.
    const int waited = sd_bus_wait(bus_, static_cast<std::uint64_t>(left.count()));
    if (waited < 0 && waited != -EINTR) return false;
  }
  return true;
}

std::shared_ptr<BusCall> Bus::Call(const BusObject& object, const char* member, Time deadline,
                                   const Fill& fill) {
  auto call = Send(object, member, fill);
  if (!Wait([&] { return call->done; }, deadline) && !call->done) call->error = kNoAnswer;
  return call;
}

int Bus::Descriptor() const {
  return sd_bus_get_fd(bus_);
}

bool Bus::WantsToWrite() const {
  const int events = sd_bus_get_events(bus_);
  return events > 0 && (events & POLLOUT) != 0;
}

std::optional<Bus::Time> Bus::Due() const {
  std::uint64_t microseconds = 0;
  if (sd_bus_get_timeout(bus_, &microseconds) < 0 || microseconds == kForEver) return std::nullopt;
  return Time(std::chrono::microseconds(microseconds));
}

bool Bus::Serve() {
  const Time end = std::chrono::steady_clock::now() + kTurn;
  int served = 0;
  do {
    served = sd_bus_process(bus_, nullptr);
  } while (served > 0 && std::chrono::steady_clock::now() < end);
  return served >= 0;
}

}  // namespace orvane
