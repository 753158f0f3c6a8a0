// Whether the service is on the system bus.
#pragma once

#include <functional>
#include <utility>
#include <vector>

#include "app/state.h"
#include "check/check_rows.h"
#include "platform/linux/bus_connection.h"

namespace orvane {

// Waits for the bus to tell, for half a second at most.
bool ServiceRuns(BusConnection& connection);

// What the service says of its protection, in its language, which `state` takes over with its
// settings. Nothing when it does not answer within two seconds.
std::vector<CheckRow> AskServiceForCheck(BusConnection& connection, State& state);

// Waits for the service to come and go.
class ServiceWatch {
 public:
  // `on_change` runs inside the bus's service: whether the service is there now. The connection
  // outlives this object and carries nothing else.
  ServiceWatch(BusConnection& connection, std::function<void(bool there)> on_change)
      : connection_(connection), on_change_(std::move(on_change)) {}

  // Looks where it has not looked yet: at first, and when the bus has gone and come back. To be
  // called now and then.
  void Keep();

 private:
  BusConnection& connection_;
  const std::function<void(bool there)> on_change_;
  Bus* bus_ = nullptr;  // which is listened to
};

}  // namespace orvane
