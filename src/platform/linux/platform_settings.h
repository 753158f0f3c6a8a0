// `platform.ini` in the program's directory: settings that only this platform needs. The file and
// every key in it may be missing. A remark may stand behind a value: a blank, a semicolon, any
// text.
#pragma once

#include <array>
#include <optional>
#include <string>

#include "platform/disk.h"
#include "platform/linux/logind.h"

namespace orvane {

struct PlatformSettings {
  // [Ports] COM1 to COM4: device paths by port number less 1. Empty: not named.
  std::array<std::string, 4> ports;
  // [Shutdown] Action.
  ShutdownAction action = ShutdownAction::kHalt;
  // What stands there, where it is no action's name; empty otherwise.
  std::string unknown_action;
  // [Battery] Voltage: nominal volts of the whole battery, from 2 to 1000. Empty: not given.
  std::optional<float> battery_voltage;
  // What stands there, where it is no such voltage; empty otherwise.
  std::string bad_battery_voltage;
  // [Desktop] Notifications: false for 0.
  bool notifications = true;
  // [Share] Socket: the path on which the UPS is offered to upsd, as it stands if absolute, else
  // below the program's directory; not given: that of `Name` in upsd's own directory. Empty without
  // a Name.
  std::string share_socket;
  // What stands there as Name, where it is no name of a UPS; empty otherwise.
  std::string bad_share_name;
  // [Directories] Windows, without a slash at the end: as it stands if absolute, else below the
  // program's directory; not given: the program's directory.
  std::string report_directory;
};

PlatformSettings LoadPlatformSettings(const Disk& disk, const std::string& program_directory);

}  // namespace orvane
