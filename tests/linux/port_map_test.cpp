#include "platform/linux/port_map.h"

#include <gtest/gtest.h>

namespace orvane::test {
namespace {

using Devices = std::vector<std::string>;

// "a b - -": the devices of ports 1 to 4, "-" for none.
std::string Ports(PortMap& map) {
  std::string text;
  for (int number = 1; number <= 4; ++number) {
    const std::string device = map.DeviceOf(number);
    text += (number > 1 ? " " : "") + (device.empty() ? "-" : device);
  }
  return text;
}

TEST(PortMap, UnnamedPortsAreTheNextDevices) {
  struct Case {
    std::array<std::string, 4> named;
    Devices present;
    const char* ports;
  };
  for (const Case& c : {
           Case{{}, {}, "- - - -"},
           {{}, {"S0", "USB0"}, "S0 USB0 - -"},
           {{}, {"S0", "S1", "USB0", "USB1", "ACM0"}, "S0 S1 USB0 USB1"},
           {{"", "S0", "", ""}, {"S0", "USB0", "ACM0"}, "USB0 S0 ACM0 -"},
           {{"away", "", "", ""}, {"S0"}, "away S0 - -"},
       }) {
    PortMap map(c.named, [&] { return c.present; });
    EXPECT_EQ(Ports(map), c.ports);
    for (const int number : {-1, 0, 5}) EXPECT_EQ(map.DeviceOf(number), "");
  }
}

TEST(PortMap, DevicesKeepTheirNumbersThroughUnplugging) {
  Devices present = {"USB0", "USB1"};
  PortMap map({}, [&] { return present; });
  EXPECT_EQ(Ports(map), "USB0 USB1 - -");
  present = {"USB1"};
  EXPECT_EQ(Ports(map), "USB0 USB1 - -");
  present = {"USB0", "USB1"};
  EXPECT_EQ(Ports(map), "USB0 USB1 - -");
  // An adapter that comes back under another name takes the place that it left.
  present = {"USB1", "USB2"};
  EXPECT_EQ(Ports(map), "USB2 USB1 - -");
  present = {"USB1", "USB2", "S0"};
  EXPECT_EQ(Ports(map), "USB2 USB1 S0 -");
}

}  // namespace
}  // namespace orvane::test
