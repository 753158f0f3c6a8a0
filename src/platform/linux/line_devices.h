// The devices of this machine at whose end a UPS or a modem may be.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace orvane {

// Device paths of the machine's serial ports: those of the mainboard that have hardware behind
// them, then the USB adapters, then the USB devices with a port of their own; each kind in the
// order of its numbers. `port_class` is the folder in which the kernel lists them; none are
// found where there is none.
std::vector<std::string> SerialDevices(const std::string& port_class = "/sys/class/tty");

// USB vendor and product number.
struct UsbNumber {
  std::uint32_t vendor;
  std::uint32_t product;
};

// UPSes that are known to carry their serial line in HID reports.
inline constexpr std::array<UsbNumber, 7> kHidUpses = {{{0x0665, 0x5161},
                                                        {0x05b8, 0x0000},
                                                        {0x06da, 0x0002},
                                                        {0x06da, 0x0004},
                                                        {0x06da, 0x0005},
                                                        {0x06da, 0x0201},
                                                        {0x0f03, 0x0001}}};

// Device paths of those of them that are plugged in, in the order of the devices' numbers.
std::vector<std::string> HidUpsDevices(const std::string& hid_class = "/sys/class/hidraw");

// All of these, the serial ports first.
std::vector<std::string> LineDevices();

}  // namespace orvane
