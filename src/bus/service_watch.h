// Whether the service is on the system bus.
#pragma once

#include <functional>

#include "platform/linux/bus_connection.h"

namespace orvane {

// Waits for the bus to tell, for half a second at most.
bool ServiceRuns(BusConnection& connection);

// Has `on_start` run, inside the bus's service, whenever the service appears on this connection.
void WatchForService(BusConnection& connection, std::function<void()> on_start);

}  // namespace orvane
