// Which device stands behind a port number.
#pragma once

#include <array>
#include <functional>
#include <string>
#include <vector>

namespace orvane {

// Device paths of the machine's serial ports: those of the mainboard that have hardware behind
// them, then the USB adapters, then the USB devices with a port of their own; each kind in the
// order of its numbers. `port_class` is the folder in which the kernel lists them; none are
// found where there is none.
std::vector<std::string> SerialDevices(const std::string& port_class = "/sys/class/tty");

class PortMap {
 public:
  static constexpr std::size_t kPorts = 4;

  // `named`: the devices that the user gave to the ports 1 to 4; empty where none. `devices` lists
  // those that are there, at every question anew.
  PortMap(
      std::array<std::string, kPorts> named,
      std::function<std::vector<std::string>()> devices = [] { return SerialDevices(); });

  // The device of port `number`; empty when there is none. A port that is not named is the next of
  // the devices that are not named either. It keeps its device while the program runs, also when
  // that is pulled out for a while; a device that was not there before takes the place of one that
  // has gone, else the next free number.
  std::string DeviceOf(int number);

 private:
  void Assign();

  const std::array<std::string, kPorts> named_;
  const std::function<std::vector<std::string>()> devices_;
  std::array<std::string, kPorts> assigned_;
};

}  // namespace orvane
