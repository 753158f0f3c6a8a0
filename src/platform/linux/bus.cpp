#include "platform/linux/bus.h"

#include <systemd/sd-bus.h>

#include <cerrno>
#include <cstring>
#include <limits>

namespace orvane {
namespace {

constexpr const char* kNoAnswer = "no answer in time";

// The library's own time-out never comes first: Wait has the deadline.
constexpr std::uint64_t kForEver = std::numeric_limits<std::uint64_t>::max();

// Keeps the call alive until the library has let go of it.
using Holder = std::shared_ptr<BusCall>;

int TakeAnswer(sd_bus_message* message, void* data, sd_bus_error*) {
  BusCall& call = **static_cast<Holder*>(data);
  call.done = true;
  if (const sd_bus_error* error = sd_bus_message_get_error(message)) {
    call.error = error->message && *error->message ? error->message : error->name;
  } else {
    call.answer = sd_bus_message_ref(message);
  }
  return 0;
}

void Release(void* data) {
  delete static_cast<Holder*>(data);
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

std::shared_ptr<BusCall> Bus::Send(const BusObject& object, const char* member,
                                   const std::function<void(sd_bus_message*)>& fill) {
  auto call = std::make_shared<BusCall>();
  sd_bus_message* message = nullptr;
  int result = sd_bus_message_new_method_call(bus_, &message, object.destination, object.path,
                                              object.interface, member);
  if (result >= 0) {
    if (fill) fill(message);
    sd_bus_slot* slot = nullptr;
    auto* holder = new Holder(call);
    result = sd_bus_call_async(bus_, &slot, message, TakeAnswer, holder, kForEver);
    if (result < 0) {
      delete holder;
    } else {
      sd_bus_slot_set_destroy_callback(slot, Release);
      sd_bus_slot_set_floating(slot, 1);
      sd_bus_slot_unref(slot);
    }
  }
  sd_bus_message_unref(message);
  if (result < 0) {
    call->done = true;
    call->error = std::strerror(-result);
  }
  return call;
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
                                   const std::function<void(sd_bus_message*)>& fill) {
  auto call = Send(object, member, fill);
  if (!Wait([&] { return call->done; }, deadline) && !call->done) call->error = kNoAnswer;
  return call;
}

}  // namespace orvane
