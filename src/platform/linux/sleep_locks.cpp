#include "platform/linux/sleep_locks.h"

#include <fcntl.h>
#include <systemd/sd-bus.h>

#include <utility>

#include "platform/linux/logind.h"

namespace orvane {
namespace {

bool IsMissingRight(const BusCall& call) {
  return call.error_name == SD_BUS_ERROR_ACCESS_DENIED ||
         call.error_name == SD_BUS_ERROR_INTERACTIVE_AUTHORIZATION_REQUIRED;
}

}  // namespace

void SleepLocks::Watch(std::function<void(bool asleep)> handler) {
  std::string error;
  Bus* bus = bus_.Get(error);
  if (!bus) return;
  bus->Subscribe(kLogindManager, "PrepareForSleep",
                 [this, handler = std::move(handler)](sd_bus_message* message) {
                   int asleep = 0;
                   if (sd_bus_message_read(message, "b", &asleep) <= 0) return;
                   if (!asleep) Take(delay_);
                   handler(asleep != 0);
                   if (asleep) Release(delay_);
                 });
  Take(delay_);
}

void SleepLocks::KeepAwake(bool on) {
  if (on == block_.wanted) return;
  if (on) {
    Take(block_);
  } else {
    Release(block_);
  }
}

void SleepLocks::Take(Lock& lock) {
  lock.wanted = true;
  if (lock.held || lock.asked) return;
  std::string error;
  Bus* bus = bus_.Get(error);
  if (!bus) return;
  lock.asked = true;
  bus->Send(
      kLogindManager, "Inhibit",
      [&](sd_bus_message* message) {
        for (const char* text : {lock.what, "Orvane", lock.why, lock.mode}) {
          sd_bus_message_append_basic(message, 's', text);
        }
      },
      [this, &lock](const BusCall& call) {
        lock.asked = false;
        int descriptor = -1;
        if (call.Answered() && sd_bus_message_read(call.answer, "h", &descriptor) > 0) {
          if (lock.wanted) lock.held = File(fcntl(descriptor, F_DUPFD_CLOEXEC, 3));
        } else if (IsMissingRight(call) && !std::exchange(lock.refused, true)) {
          report_(std::string("the computer may fall asleep at the wrong time: no lock ") +
                  lock.what + ": " + call.error);
        }
      });
}

void SleepLocks::Release(Lock& lock) {
  lock.wanted = false;
  lock.held = File();
}

}  // namespace orvane
