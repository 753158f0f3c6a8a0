#include "platform/linux/notifications.h"

#include <systemd/sd-bus.h>

#include <string>
#include <utility>

namespace orvane {
namespace {

constexpr BusObject kServer{"org.freedesktop.Notifications", "/org/freedesktop/Notifications",
                            "org.freedesktop.Notifications"};

// A server that takes longer is not waited for.
constexpr std::chrono::seconds kPatience{2};

constexpr std::uint8_t kNormal = 1;
constexpr std::uint8_t kCritical = 2;
constexpr std::int32_t kServersChoice = -1;
constexpr std::int32_t kNever = 0;

}  // namespace

void Notifications::Show(Notice notice, const Notification& notification) {
  Place& place = places_[static_cast<std::size_t>(notice)];
  place.wanted = notification;
  place.unwanted = false;
  Send(place);
}

void Notifications::Withdraw(Notice notice) {
  Place& place = places_[static_cast<std::size_t>(notice)];
  place.wanted.reset();
  place.unwanted = true;
  Send(place);
}

void Notifications::Send(Place& place) {
  const Bus::Time now = std::chrono::steady_clock::now();
  if (place.asked && now - *place.asked < kPatience) return;
  if (!place.wanted && (!std::exchange(place.unwanted, false) || place.number == 0)) return;
  std::string error;
  Bus* bus = bus_.Get(error);
  if (!bus) return;
  if (!place.wanted) {
    const std::uint32_t number = std::exchange(place.number, 0);
    bus->Send(kServer, "CloseNotification",
              [&](sd_bus_message* message) { sd_bus_message_append(message, "u", number); });
    return;
  }
  const Notification notification = *std::exchange(place.wanted, std::nullopt);
  place.asked = now;
  bus->Send(
      kServer, "Notify",
      [&](sd_bus_message* message) {
        sd_bus_message_append(message, "susssasa{sv}i", "Orvane", place.number, "orvane",
                              notification.title.c_str(), notification.body.c_str(), 0, 1,
                              "urgency", "y", notification.urgent ? kCritical : kNormal,
                              notification.stays ? kNever : kServersChoice);
      },
      [this, &place](const BusCall& call) {
        place.asked.reset();
        std::uint32_t number = 0;
        if (call.Answered() && sd_bus_message_read(call.answer, "u", &number) > 0) {
          place.number = number;
        }
        Send(place);
      });
}

}  // namespace orvane
