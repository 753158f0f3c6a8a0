#include "platform/linux/port_map.h"

#include <gtest/gtest.h>

namespace orvane::test {
namespace {

TEST(PortMap, DevicesKeepTheirNumbers) {
  const struct {
    std::array<std::string, 4> named;
    std::vector<std::string> present;
    std::vector<std::string> later;
    std::vector<std::string> ports;  // those of 0 to 5 in the end
  } cases[] = {
      {{}, {}, {}, {"", "", "", "", "", ""}},
      {{}, {"S0", "S1", "U0", "U1", "A0"}, {}, {"", "S0", "S1", "U0", "U1", ""}},
      {{"", "S0", "", ""}, {"S0", "U0", "A0"}, {}, {"", "U0", "S0", "A0", "", ""}},
      {{"away", "", "", ""}, {"S0"}, {"S0"}, {"", "away", "S0", "", "", ""}},
      {{}, {"U0", "U1"}, {"U1"}, {"", "U0", "U1", "", "", ""}},
      // An adapter that comes back under another name takes the place that it left.
      {{}, {"U0", "U1"}, {"U1", "U2", "S0"}, {"", "U2", "U1", "S0", "", ""}},
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
