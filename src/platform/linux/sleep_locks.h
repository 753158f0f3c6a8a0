// Locks of logind against sleep (org.freedesktop.login1(5), Inhibit): one that gives the program
// time to let go of its port before the computer falls asleep, and one that keeps the computer
// awake while it runs on battery.
#pragma once

#include <functional>
#include <string>

#include "platform/linux/bus_connection.h"
#include "platform/linux/file.h"

namespace orvane {

class SleepLocks {
 public:
  // `report` takes one line when this user may not have a lock: once for each kind.
  SleepLocks(BusConnection& bus, std::function<void(const std::string&)> report)
      : bus_(bus), report_(std::move(report)) {}

  // From now on has `handler` run from the event loop: with true before the computer falls asleep,
  // which waits for it, and with false when it has woken. Nothing happens where there is no system
  // bus. To be called once.
  void Watch(std::function<void(bool asleep)> handler);

  // Keeps the computer from falling asleep, whether the user or its own idleness asks for it, or no
  // longer does. The same value again changes nothing. Never waits.
  void KeepAwake(bool on);

 private:
  struct Lock {
    const char* what;
    const char* mode;
    const char* why;
    bool wanted = false;
    bool asked = false;    // logind has not answered yet
    bool refused = false;  // the refusal has been reported
    File held{};           // the lock lasts until this is closed
  };

  void Take(Lock& lock);
  static void Release(Lock& lock);

  BusConnection& bus_;
  std::function<void(const std::string&)> report_;
  Lock delay_{"sleep", "delay", "closes the line to the UPS"};
  Lock block_{"sleep:idle", "block", "the mains has failed"};
};

}  // namespace orvane
