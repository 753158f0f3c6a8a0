#include "platform/linux/platform_settings.h"

#include <algorithm>
#include <charconv>
#include <string_view>
#include <system_error>

#include "platform/profile.h"

namespace orvane {
namespace {

constexpr float kLeastBattery = 2;
constexpr float kMostBattery = 1000;

// Where Debian's upsd looks for the sockets of its drivers, and how ours begins.
const std::string kUpsdDirectory = "/run/nut/orvane-";

// A value without the remark that may stand behind it: a blank, a semicolon and the rest.
std::string ValueOf(const ProfileFile& file, std::string_view section, std::string_view key) {
  std::string value = file.Get(section, key).value_or("");
  if (value.starts_with(';')) return "";
  value.resize(std::min({value.find(" ;"), value.find("\t;"), value.size()}));
  value.resize(value.find_last_not_of(" \t") + 1);
  return value;
}

std::string Absolute(const std::string& path, const std::string& directory) {
  return path.starts_with('/') ? path : directory + '/' + path;
}

// A name that can stand in ups.conf and in a path.
bool IsUpsName(std::string_view name) {
  return !name.empty() && std::all_of(name.begin(), name.end(), [](char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '-' ||
           c == '_';
  });
}

}  // namespace

PlatformSettings LoadPlatformSettings(const Disk& disk, const std::string& program_directory) {
  PlatformSettings settings;
  settings.report_directory = program_directory;
  const auto text = disk.Read(program_directory + "/platform.ini");
  if (!text) return settings;
  const ProfileFile file = ProfileFile::Parse(*text);
  for (std::size_t i = 0; i < settings.ports.size(); ++i) {
    settings.ports[i] = ValueOf(file, "Ports", "COM" + std::to_string(i + 1));
  }
  const std::string action = ValueOf(file, "Shutdown", "Action");
  if (!ReadShutdownAction(action, settings.action)) settings.unknown_action = action;
  if (const std::string voltage = ValueOf(file, "Battery", "Voltage"); !voltage.empty()) {
    float volts = 0;
    const char* end = voltage.data() + voltage.size();
    const auto [stop, error] = std::from_chars(voltage.data(), end, volts);
    if (error == std::errc{} && stop == end && volts >= kLeastBattery && volts <= kMostBattery) {
      settings.battery_voltage = volts;
    } else {
      settings.bad_battery_voltage = voltage;
    }
  }
  settings.notifications = ValueOf(file, "Desktop", "Notifications") != "0";
  if (const std::string name = ValueOf(file, "Share", "Name"); IsUpsName(name)) {
    const std::string socket = ValueOf(file, "Share", "Socket");
    settings.share_socket =
        socket.empty() ? kUpsdDirectory + name : Absolute(socket, program_directory);
  } else {
    settings.bad_share_name = name;
  }
  if (auto directory = ValueOf(file, "Directories", "Windows"); !directory.empty()) {
    while (directory.size() > 1 && directory.back() == '/') directory.pop_back();
    settings.report_directory = Absolute(directory, program_directory);
  }
  return settings;
}

}  // namespace orvane
