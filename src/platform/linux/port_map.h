// Which device stands behind a port number.
#pragma once

#include <array>
#include <functional>
#include <string>
#include <vector>

#include "platform/linux/line_devices.h"

namespace orvane {

class PortMap {
 public:
  static constexpr std::size_t kPorts = 4;

  // `named`: the devices that the user gave to the ports 1 to 4; empty where none. `devices` lists
  // those that are there, at every question anew.
  explicit PortMap(std::array<std::string, kPorts> named,
                   std::function<std::vector<std::string>()> devices = LineDevices);

  // The device of port `number`; empty when there is none. A port that is not named is the next of
  // the devices that are not named either. It keeps its device while the program runs, also when
  // that is pulled out for a while; a device that was not there before takes the place of one that
  // has gone, of one of its own kind rather than another, else the next free number.
  std::string DeviceOf(int number);

 private:
  void Assign();

  const std::array<std::string, kPorts> named_;
  const std::function<std::vector<std::string>()> devices_;
  std::array<std::string, kPorts> assigned_;
};

}  // namespace orvane
