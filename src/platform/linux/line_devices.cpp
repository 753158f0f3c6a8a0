#include "platform/linux/line_devices.h"

#include <dirent.h>
#include <fcntl.h>
#include <linux/serial.h>
#include <sys/ioctl.h>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <functional>
#include <optional>
#include <string_view>
#include <utility>

#include "platform/linux/file.h"

namespace orvane {
namespace {

// The number behind the prefix, where the rest of the name is nothing else.
std::optional<int> NumberOf(std::string_view name, std::string_view prefix) {
  if (!name.starts_with(prefix)) return std::nullopt;
  name.remove_prefix(prefix.size());
  int number = 0;
  const auto [stop, error] = std::from_chars(name.data(), name.data() + name.size(), number);
  if (error != std::errc{} || stop != name.data() + name.size()) return std::nullopt;
  return number;
}

// Appends the device paths of the entries of `folder` that have the prefix and a number and are
// wanted, in the order of their numbers.
void AddDevices(const std::string& folder, std::string_view prefix,
                const std::function<bool(const std::string& entry)>& wanted,
                std::vector<std::string>& devices) {
  std::vector<std::pair<int, std::string>> found;
  if (DIR* entries = opendir(folder.c_str())) {
    while (const dirent* entry = readdir(entries)) {
      const auto number = NumberOf(entry->d_name, prefix);
      if (number && wanted(entry->d_name)) found.emplace_back(*number, entry->d_name);
    }
    closedir(entries);
  }
  std::sort(found.begin(), found.end());
  for (const auto& [number, name] : found) devices.push_back("/dev/" + name);
}

// The driver makes ports of this kind for hardware that may never have been built in.
bool HasHardware(const std::string& port_class, const std::string& name) {
  std::string type;
  const File type_file(open((port_class + '/' + name + "/type").c_str(), O_RDONLY | O_CLOEXEC));
  if (type_file && type_file.ReadAll(type)) return type != "0\n";
  const File port(open(("/dev/" + name).c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
  serial_struct info{};
  return port && ioctl(port.Get(), TIOCGSERIAL, &info) == 0 && info.type != PORT_UNKNOWN;
}

// The kernel tells bus, vendor and product in a line like "HID_ID=0003:00000665:00005161".
bool IsHidUps(const std::string& hid_class, const std::string& name) {
  constexpr unsigned kUsb = 3;
  const std::string path = hid_class + '/' + name + "/device/uevent";
  const File file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
  std::string text;
  if (!file || !file.ReadAll(text)) return false;
  const std::size_t line = text.find("HID_ID=");
  if (line == std::string::npos) return false;
  unsigned bus = 0, vendor = 0, product = 0;
  if (std::sscanf(text.c_str() + line, "HID_ID=%x:%x:%x", &bus, &vendor, &product) != 3) {
    return false;
  }
  return bus == kUsb && std::any_of(kHidUpses.begin(), kHidUpses.end(), [&](const UsbNumber& ups) {
           return ups.vendor == vendor && ups.product == product;
         });
}

}  // namespace

std::vector<std::string> SerialDevices(const std::string& port_class) {
  const auto built_in = [&](const std::string& name) { return HasHardware(port_class, name); };
  const auto any = [](const std::string&) { return true; };
  std::vector<std::string> devices;
  AddDevices(port_class, "ttyS", built_in, devices);
  AddDevices(port_class, "ttyUSB", any, devices);
  AddDevices(port_class, "ttyACM", any, devices);
  return devices;
}

std::vector<std::string> HidUpsDevices(const std::string& hid_class) {
  std::vector<std::string> devices;
  AddDevices(
      hid_class, "hidraw", [&](const std::string& name) { return IsHidUps(hid_class, name); },
      devices);
  return devices;
}

std::vector<std::string> LineDevices() {
  std::vector<std::string> devices = SerialDevices();
  const std::vector<std::string> upses = HidUpsDevices();
  devices.insert(devices.end(), upses.begin(), upses.end());
  return devices;
}

}  // namespace orvane
