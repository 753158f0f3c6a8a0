#include "bus/service_watch.h"

#include <systemd/sd-bus.h>

#include <chrono>
#include <string>
#include <utility>

#include "bus/interface.h"

namespace orvane {
namespace {

constexpr std::chrono::milliseconds kPatience{500};

}  // namespace

bool ServiceRuns(BusConnection& connection) {
  std::string error;
  Bus* bus = connection.Get(error);
  if (!bus) return false;
  const auto call =
      bus->Call(kBusDriver, "GetNameOwner", std::chrono::steady_clock::now() + kPatience,
                [](sd_bus_message* message) { sd_bus_message_append(message, "s", kBusName); });
  return !call->Text().empty();
}

void WatchForService(BusConnection& connection, std::function<void()> on_start) {
  std::string error;
  Bus* bus = connection.Get(error);
  if (!bus) return;
  bus->Match(kServiceOwnerRule, [on_start = std::move(on_start)](sd_bus_message* signal) {
    const char *name = nullptr, *old_owner = nullptr, *new_owner = nullptr;
    if (sd_bus_message_read(signal, "sss", &name, &old_owner, &new_owner) > 0 && *new_owner) {
      on_start();
    }
  });
}

}  // namespace orvane
