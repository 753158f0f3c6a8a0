#include "platform/linux/port_map.h"

#include <sys/stat.h>

#include <algorithm>
#include <string_view>
#include <utility>

namespace orvane {
namespace {

// A device has many names, as its by-id link and its plain one, but a single number.
bool SameDevice(const std::string& a, const std::string& b) {
  if (a == b) return true;
  struct stat x {
  }, y{};
  return stat(a.c_str(), &x) == 0 && stat(b.c_str(), &y) == 0 && S_ISCHR(x.st_mode) &&
         S_ISCHR(y.st_mode) && x.st_rdev == y.st_rdev;
}

// The name without its number.
std::string_view KindOf(std::string_view device) {
  return device.substr(0, device.find_last_not_of("0123456789") + 1);
}

bool Contains(const std::vector<std::string>& devices, const std::string& device) {
  return std::find(devices.begin(), devices.end(), device) != devices.end();
}

}  // namespace

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
    for (const bool any_kind : {false, true}) {
      for (std::size_t i = 0; i < kPorts && !place; ++i) {
        const std::string& gone = assigned_[i];
        if (!named_[i].empty() || gone.empty() || Contains(present, gone)) continue;
        if (any_kind || KindOf(gone) == KindOf(device)) place = &assigned_[i];
      }
    }
    for (std::size_t i = 0; i < kPorts && !place; ++i) {
      if (named_[i].empty() && assigned_[i].empty()) place = &assigned_[i];
    }
    if (place) *place = device;
  }
}

}  // namespace orvane
