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
  const std::tuple<Gauge, std::int16_t, float, float> cases[] = {
      {Gauge::kInput, 200, 1410, 2325},
      {Gauge::kInput, 250, 615, 1530},
      {Gauge::kOutput, 225, 3315 + 551.54F, 2325 - 551.54F},
      {Gauge::kLoad, 100, 5910 + 236.40F, 2340 - 727.56F},
      {Gauge::kBattery, 50, 5895 + 572.76F, 3990 - 572.76F},
      {Gauge::kFrequency, 50, 630 + 582.49F, 4005 - 423.21F},
      {Gauge::kTemperature, 30, 3330 + 594.63F, 4005 - 432.02F},
  };
  for (const auto& [gauge, value, x, y] : cases) {
    SCOPED_TRACE(value);
    const Needle::Ends before = panel.needles[gauge].Line();
    SetGauge(form, panel, gauge, value);
    const Needle::Ends& line = panel.needles[gauge].Line();
    EXPECT_NEAR(line.x2, x, 0.02);
    EXPECT_NEAR(line.y2, y, 0.02);
    EXPECT_EQ(std::pair(line.x1, line.y1), std::pair(before.x1, before.y1));
  }
}

}  // namespace
}  // namespace orvane::test
