// Waits for a tray on the desktop (StatusNotifierWatcher of the StatusNotifierItem specification).
#pragma once

#include <functional>

#include "platform/linux/bus_connection.h"
#include "platform/timer.h"

namespace orvane {

class TrayWatch {
 public:
  // Has `appear` run once: when there is a tray, or when the desktop has none after half a minute,
  // for the older kind of X11, or at once where there is no bus. Never where the bus hangs, since
  // whoever shows an icon would hang with it. `patience` belongs to this object, which lives as
  // long as the connection.
  TrayWatch(BusConnection& bus, Timer& patience, std::function<void()> appear);
  TrayWatch(const TrayWatch&) = delete;
  TrayWatch& operator=(const TrayWatch&) = delete;

 private:
  void Ask();
  void Appear();

  BusConnection& bus_;
  Timer& patience_;
  std::function<void()> appear_;
};

}  // namespace orvane
