#include "platform/linux/port_map.h"

#include <dirent.h>
#include <fcntl.h>
#include <linux/serial.h>
#include <sys/ioctl.h>
#include <sys/stat.h>

#include <algorithm>
#include <charconv>
#include <optional>
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

// The driver makes ports of this kind for hardware that may never have been built in.
bool HasHardware(const std::string& port_class, const std::string& name) {
  std::string type;
  const File type_file(open((port_class + '/' + name + "/type").c_str(), O_RDONLY | O_CLOEXEC));
  if (type_file && type_file.ReadAll(type)) return type != "0\n";
  const File port(open(("/dev/" + name).c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
  serial_struct info{};
  return port && ioctl(port.Get(), TIOCGSERIAL, &info) == 0 && info.type != PORT_UNKNOWN;
}

// A device has many names, as its by-id link and its plain one, but a single number.
bool SameDevice(const std::string& a, const std::string& b) {
  if (a == b) return true;
  struct stat x {
  }, y{};
  return stat(a.c_str(), &x) == 0 && stat(b.c_str(), &y) == 0 && S_ISCHR(x.st_mode) &&
         S_ISCHR(y.st_mode) && x.st_rdev == y.st_rdev;
}

bool Contains(const std::vector<std::string>& devices, const std::string& device) {
  return std::find(devices.begin(), devices.end(), device) != devices.end();
}

}  // namespace

std::vector<std::string> SerialDevices(const std::string& port_class) {
  std::vector<std::string> names;
  if (DIR* entries = opendir(port_class.c_str())) {
    while (const dirent* entry = readdir(entries)) names.emplace_back(entry->d_name);
    closedir(entries);
  }
  std::vector<std::string> devices;
  for (const std::string_view prefix : {"ttyS", "ttyUSB", "ttyACM"}) {
    std::vector<std::pair<int, std::string>> kind;
    for (const std::string& name : names) {
      const auto number = NumberOf(name, prefix);
      if (number && (prefix != "ttyS" || HasHardware(port_class, name)))
        kind.emplace_back(*number, name);
    }
    std::sort(kind.begin(), kind.end());
    for (const auto& [number, name] : kind) devices.push_back("/dev/" + name);
  }
  return devices;
}

PortMap::PortMap(std::array<std::string, kPorts> named,
                 std::function<std::vector<std::string>()> devices)
    : named_(std::move(named)), devices_(std::move(devices)) {}

std::string PortMap::DeviceOf(int number) {
  if (number < 1 || number > static_cast<int>(kPorts)) return "";
  const auto index = static_cast<std::size_t>(number - 1);
  if (!named_[index].empty()) return named_[index];
  Assign();
  return assigned_[index];
}

void PortMap::Assign() {
  std::vector<std::string> present = devices_();
  std::erase_if(present, [this](const std::string& device) {
    return std::any_of(named_.begin(), named_.end(), [&](const std::string& named) {
      return !named.empty() && SameDevice(named, device);
    });
  });
  for (const std::string& device : present) {
    if (std::find(assigned_.begin(), assigned_.end(), device) != assigned_.end()) continue;
    std::string* place = nullptr;
    for (std::size_t i = 0; i < kPorts && !place; ++i) {
      if (named_[i].empty() && !assigned_[i].empty() && !Contains(present, assigned_[i])) {
        place = &assigned_[i];
      }
    }
    for (std::size_t i = 0; i < kPorts && !place; ++i) {
      if (named_[i].empty() && assigned_[i].empty()) place = &assigned_[i];
    }
    if (place) *place = device;
  }
}

}  // namespace orvane
