#include "app/gauges.h"

#include <gtest/gtest.h>

namespace orvane::test {
namespace {

struct GaugesTest : testing::Test {
  GaugesTest() { CaptureNeedles(panel, form); }

  Panel panel;
  MainFormState form;
};

// Cosine and sine of 36, 45 and 72 degrees times the needle's length give the tips between.
TEST_F(GaugesTest, TipsStandWhereTheScalesSay) {
  const std::tuple<std::size_t, std::int16_t, float, float> cases[] = {
      {0, 200, 1410, 2325},
      {0, 250, 615, 1530},
      {1, 225, 3315 + 551.54F, 2325 - 551.54F},
      {2, 100, 5910 + 236.40F, 2340 - 727.56F},
      {3, 50, 5895 + 572.76F, 3990 - 572.76F},
      {4, 50, 630 + 582.49F, 4005 - 423.21F},
      {5, 30, 3330 + 594.63F, 4005 - 432.02F},
  };
  for (const auto& [i, value, x, y] : cases) {
    SCOPED_TRACE(std::to_string(i) + " at " + std::to_string(value));
    const Needle::Ends before = panel.Line1[i].Line();
    SetGauge(form, panel, static_cast<int>(i), value);
    const Needle::Ends& line = panel.Line1[i].Line();
    EXPECT_NEAR(line.x2, x, 0.02);
    EXPECT_NEAR(line.y2, y, 0.02);
    EXPECT_EQ(std::pair(line.x1, line.y1), std::pair(before.x1, before.y1));
  }
}

TEST_F(GaugesTest, ForeignIndexMovesNothing) {
  int moves = 0;
  for (Needle& needle : panel.Line1) needle.Observer = [&] { ++moves; };
  for (const int index : {-1, 6, 3, 3}) SetGauge(form, panel, index, 50);
  EXPECT_EQ(moves, 1) << "only the third, and only once";
}

}  // namespace
}  // namespace orvane::test
