// Waits for a tray on the desktop (StatusNotifierWatcher of StatusNotifierItem).
#pragma once

#include <functional>

#include "platform/linux/bus_connection.h"
#include "platform/timer.h"

namespace orvane {

class TrayWatch {
 public:
  // Has `appear` run once: with true when there is a tray; with false when the desktop has none
  // after half a minute, or at once where there is no bus, so that only the older kind of X11 is
  // left. Never where the bus hangs, since whoever shows an icon would hang with it. `patience`
  // belongs to this object, which lives as long as the connection.
  TrayWatch(BusConnection& bus, Timer& patience, std::function<void(bool modern)> appear);
  TrayWatch(const TrayWatch&) = delete;
  TrayWatch& operator=(const TrayWatch&) = delete;

 private:
  void Ask();
  void Appear(bool modern);

  BusConnection& bus_;
  Timer& patience_;
  std::function<void(bool modern)> appear_;
};

}  // namespace orvane
