#include "app/gauges.h"

#include <gtest/gtest.h>

namespace orvane::test {
namespace {

struct TipCase {
  int index;
  std::int16_t value;
  float x;
  float y;
};

// Cosine and sine of 36, 45 and 72 degrees times the needle's length give the tips between.
constexpr TipCase kTips[] = {
    {0, 200, 1410, 2325},
    {0, 250, 615, 1530},
    {1, 225, 3315 + 551.54F, 2325 - 551.54F},
    {2, 0, 6675, 2340},
    {2, 100, 5910 + 236.40F, 2340 - 727.56F},
    {2, 125, 5910, 1575},
    {3, 50, 5895 + 572.76F, 3990 - 572.76F},
    {3, 100, 5895, 3180},
    {4, 30, 1350, 4005},
    {4, 50, 630 + 582.49F, 4005 - 423.21F},
    {5, 75, 3330, 3270},
    {5, 30, 3330 + 594.63F, 4005 - 432.02F},
};

TEST(GaugesTest, TipsStandWhereTheScalesSay) {
  Panel panel;
  MainFormState form;
  CaptureNeedles(panel, form);
  for (const TipCase& row : kTips) {
    SCOPED_TRACE(std::to_string(row.index) + " at " + std::to_string(row.value));
    const auto i = static_cast<std::size_t>(row.index);
    const Needle::Ends before = panel.Line1[i].Line();
    SetGauge(form, panel, row.index, row.value);
    const Needle::Ends& line = panel.Line1[i].Line();
    EXPECT_NEAR(line.x2, row.x, 0.02);
    EXPECT_NEAR(line.y2, row.y, 0.02);
    EXPECT_EQ(line.x1, before.x1);
    EXPECT_EQ(line.y1, before.y1);
  }
}

TEST(GaugesTest, ForeignIndexMovesNothing) {
  Panel panel;
  MainFormState form;
  CaptureNeedles(panel, form);
  int moves = 0;
  for (Needle& needle : panel.Line1) needle.Observer = [&] { ++moves; };
  SetGauge(form, panel, -1, 50);
  SetGauge(form, panel, 6, 50);
  EXPECT_EQ(moves, 0);
  SetGauge(form, panel, 3, 50);
  SetGauge(form, panel, 3, 50);
  EXPECT_EQ(moves, 1);
}

}  // namespace
}  // namespace orvane::test
