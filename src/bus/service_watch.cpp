#include "bus/service_watch.h"

#include <systemd/sd-bus.h>

#include <chrono>
#include <string>
#include <utility>

#include "bus/fields.h"
#include "bus/interface.h"

namespace orvane {
namespace {

constexpr std::chrono::milliseconds kPatience{500};
constexpr std::chrono::seconds kAnswer{2};

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

std::vector<CheckRow> AskServiceForCheck(BusConnection& connection, State& state) {
  std::vector<CheckRow> rows;
  std::string error;
  Bus* bus = connection.Get(error);
  if (!bus) return rows;
  const auto call = bus->Call(kSee, "Attach", std::chrono::steady_clock::now() + kAnswer);
  bus->Send(kSee, "Detach");
  if (!call->answer) return rows;
  TakeFields(call->answer,
             {{"settings", [&](sd_bus_message* message) { return TakeSettings(message, state); }},
              {"check", [&](sd_bus_message* message) { return TakeRows(message, state, rows); }}});
  return rows;
}

void ServiceWatch::Keep() {
  if (bus_ && bus_->Descriptor() >= 0) return;
  std::string error;
  bus_ = connection_.Get(error);
  if (!bus_) return;
  bus_->Match(kServiceOwnerRule, [this](sd_bus_message* signal) {
    const char *name = nullptr, *old_owner = nullptr, *new_owner = nullptr;
    if (sd_bus_message_read(signal, "sss", &name, &old_owner, &new_owner) > 0) {
      on_change_(*new_owner != '\0');
    }
  });
  // It may have come with the bus.
  bus_->Send(
      kBusDriver, "GetNameOwner",
      [](sd_bus_message* message) { sd_bus_message_append(message, "s", kBusName); },
      [this](const BusCall& call) { on_change_(call.Answered()); });
}

}  // namespace orvane
