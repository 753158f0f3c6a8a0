// What the service offers on the system bus; docs/bus.md describes it.
#pragma once

#include "platform/linux/bus.h"

namespace orvane {

inline constexpr const char* kBusName = "org.orvane.Orvane1";
inline constexpr const char* kBusPath = "/org/orvane/Orvane1";
// To see, which every local user may; and to steer, which the bus leaves to some.
inline constexpr const char* kSeeInterface = "org.orvane.Orvane1";
inline constexpr const char* kSteerInterface = "org.orvane.Orvane1.Control";

inline constexpr BusObject kSee = {kBusName, kBusPath, kSeeInterface};
inline constexpr BusObject kSteer = {kBusName, kBusPath, kSteerInterface};
inline constexpr BusObject kBusDriver = {"org.freedesktop.DBus", "/org/freedesktop/DBus",
                                         "org.freedesktop.DBus"};

// Lets the coming and going of the service through.
inline constexpr const char* kServiceOwnerRule =
    "type='signal',sender='org.freedesktop.DBus',interface='org.freedesktop.DBus',"
    "member='NameOwnerChanged',arg0='org.orvane.Orvane1'";

}  // namespace orvane
