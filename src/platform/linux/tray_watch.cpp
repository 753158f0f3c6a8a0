#include "platform/linux/tray_watch.h"

#include <systemd/sd-bus.h>

#include <string>
#include <utility>

namespace orvane {
namespace {

constexpr const char* kWatcher = "org.kde.StatusNotifierWatcher";
constexpr const char* kPath = "/StatusNotifierWatcher";
constexpr BusObject kProperties{kWatcher, kPath, "org.freedesktop.DBus.Properties"};
constexpr BusObject kSignals{kWatcher, kPath, kWatcher};
constexpr BusObject kBusDriver{"org.freedesktop.DBus", "/org/freedesktop/DBus",
                               "org.freedesktop.DBus"};

// A desktop that comes up has its tray within this time.
constexpr int kPatience = 30000;  // milliseconds

void AppendProperty(sd_bus_message* message) {
  sd_bus_message_set_auto_start(message, 0);
  sd_bus_message_append(message, "ss", kWatcher, "IsStatusNotifierHostRegistered");
}

}  // namespace

TrayWatch::TrayWatch(BusConnection& bus, Timer& patience, std::function<void(bool modern)> appear)
    : bus_(bus), patience_(patience), appear_(std::move(appear)) {
  std::string error;
  Bus* open = bus_.Get(error);
  if (!open) {
    Appear(false);
    return;
  }
  patience_.Interval(kPatience);
  patience_.Tick = [this] { Appear(false); };
  const auto ask = [this](sd_bus_message*) { Ask(); };
  open->Subscribe(kSignals, "StatusNotifierHostRegistered", ask);
  open->Subscribe(kBusDriver, "NameOwnerChanged", ask, kWatcher);
  Ask();
}

void TrayWatch::Ask() {
  std::string error;
  Bus* open = appear_ ? bus_.Get(error) : nullptr;
  if (!open) return;
  open->Send(kProperties, "Get", AppendProperty, [this](const BusCall& call) {
    int there = 0;
    if (call.Answered() && sd_bus_message_read(call.answer, "v", "b", &there) > 0 && there) {
      Appear(true);
    } else if (appear_) {
      patience_.Enabled(true);
    }
  });
}

void TrayWatch::Appear(bool modern) {
  patience_.Enabled(false);
  if (const auto appear = std::exchange(appear_, nullptr)) appear(modern);
}

}  // namespace orvane
