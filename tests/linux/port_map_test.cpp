#include "platform/linux/port_map.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <regex>
#include <set>

#include "support/temp_folder.h"

namespace orvane::test {
namespace {

TEST(PortMap, FindsThePortsThatHaveHardware) {
  const TempFolder port_class;
  for (const char* name : {"ttyS10", "ttyS9", "ttyS1", "ttyS2x", "ttyUSB10", "ttyUSB9", "ttyUSB",
                           "ttyACM0", "tty1", "console"}) {
    std::filesystem::create_directory(port_class.Path(name));
    port_class.Write(name + std::string("/type"), name == std::string("ttyS1") ? "0\n" : "4\n");
  }
  const std::vector<std::string> expected = {"/dev/ttyS9", "/dev/ttyS10", "/dev/ttyUSB9",
                                             "/dev/ttyUSB10", "/dev/ttyACM0"};
  EXPECT_EQ(SerialDevices(port_class.Path()), expected);
  EXPECT_TRUE(SerialDevices(port_class.Path("absent")).empty());
}

TEST(PortMap, FindsTheUsbDevicesThatAreKnownUpses) {
  const TempFolder hid_class;
  for (const auto& [name, id] : {std::pair{"hidraw10", "0003:00000665:00005161"},
                                 {"hidraw9", "0003:000006DA:00000201"},
                                 {"hidraw1", "0005:00000665:00005161"},
                                 {"hidraw2", "0003:00000665:00005162"},
                                 {"hidraw3", "nonsense"},
                                 {"hidraw", "0003:00000665:00005161"}}) {
    std::filesystem::create_directories(hid_class.Path(name) + "/device");
    hid_class.Write(name + std::string("/device/uevent"),
                    "DRIVER=hid-generic\nHID_ID=" + std::string(id) + "\nHID_NAME=OV\n");
  }
  std::filesystem::create_directory(hid_class.Path("hidraw4"));
  const std::vector<std::string> expected = {"/dev/hidraw9", "/dev/hidraw10"};
  EXPECT_EQ(HidUpsDevices(hid_class.Path()), expected);
  EXPECT_TRUE(HidUpsDevices(hid_class.Path("absent")).empty());
}

// Each has its line in the rules that the package brings, and no other has one.
TEST(PortMap, UdevRulesNameTheSameDevices) {
  std::ifstream file(ORVANE_PACKAGING "/60-orvane-ups.rules");
  std::set<std::string> ruled;
  for (std::string line; std::getline(file, line);) {
    std::smatch match;
    static const std::regex rule(
        R"re(^ATTRS\{idVendor\}=="([0-9a-f]{4})", ATTRS\{idProduct\}=="([0-9a-f]{4})", GOTO)re");
    if (std::regex_search(line, match, rule)) ruled.insert(match.str(1) + ':' + match.str(2));
  }
  std::set<std::string> known;
  for (const UsbNumber& ups : kHidUpses) {
    char number[16];
    std::snprintf(number, sizeof number, "%04x:%04x", ups.vendor, ups.product);
    known.insert(number);
  }
  EXPECT_EQ(ruled, known);
}

TEST(PortMap, DevicesKeepTheirNumbers) {
  const struct {
    std::array<std::string, 4> named;
    std::vector<std::string> present, later;
    std::vector<std::string> ports;  // those of 0 to 5 in the end
  } cases[] = {
      {{}, {"S0", "S1", "U0", "U1", "A0"}, {}, {"", "S0", "S1", "U0", "U1", ""}},
      {{"", "S0", "", ""}, {"S0", "U0", "A0"}, {}, {"", "U0", "S0", "A0", "", ""}},
      {{"away", "", "", ""}, {"S0"}, {"S0"}, {"", "away", "S0", "", "", ""}},
      {{}, {"U0", "U1"}, {"U1"}, {"", "U0", "U1", "", "", ""}},
      // An adapter that comes back under another name takes the place that it left.
      {{}, {"U0", "U1"}, {"U1", "U2", "S0"}, {"", "U2", "U1", "S0", "", ""}},
      // Of two places the one of its own kind.
      {{}, {"U0", "H0"}, {"H1"}, {"", "U0", "H1", "", "", ""}},
      {{}, {"U0", "H0"}, {"S0"}, {"", "S0", "H0", "", "", ""}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.ports));
    std::vector<std::string> present = c.present;
    PortMap map(c.named, [&] { return present; });
    std::vector<std::string> ports;
    for (const auto* now : {&c.present, &c.later}) {
      present = *now;
      ports.clear();
      for (int number = 0; number <= 5; ++number) ports.push_back(map.DeviceOf(number));
    }
    EXPECT_EQ(ports, c.ports);
  }
}

}  // namespace
}  // namespace orvane::test
