// Notifications of the desktop (Desktop Notifications 1.2,
// org.freedesktop.Notifications).
#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <optional>

#include "platform/host.h"
#include "platform/linux/bus_connection.h"

namespace orvane {

// Never waits. A server that is missing, slow or restarts costs what it would have shown.
class Notifications {
 public:
  explicit Notifications(BusConnection& bus) : bus_(bus) {}

  void Show(Notice notice, const Notification& notification);
  void Withdraw(Notice notice);

 private:
  // One place on the desktop. What is wanted while the server has not answered goes out with its
  // answer, which tells the number to be replaced.
  struct Place {
    std::uint32_t number = 0;  // by the server; 0 before its first answer
    std::optional<Bus::Time> asked;
    std::optional<Notification> wanted;
    bool unwanted = false;
  };

  void Send(Place& place);

  BusConnection& bus_;
  std::array<Place, kNotices> places_;
};

}  // namespace orvane
