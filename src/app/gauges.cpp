#include "app/gauges.h"

#include <cmath>

namespace orvane {
namespace {

// A scale over 90 degrees: the angle in degrees is (value - zero) x factor / divisor.
struct Scale {
  int zero;
  int factor;
  int divisor;
};

constexpr Scale kScales[kGauges] = {
    {200, 90, 50}, {200, 90, 50}, {0, 90, 125}, {0, 9, 10}, {30, 90, 50}, {0, 90, 75},
};

constexpr double kPi = 3.1416;

}  // namespace

void CaptureNeedles(const Panel& panel, MainFormState& form) {
  for (std::size_t i = 0; i < kGauges; ++i) {
    const Needle::Ends& line = panel.Line1[i].Line();
    form.NeedleX[i] = static_cast<std::int16_t>(line.x2);
    form.NeedleY[i] = static_cast<std::int16_t>(line.y2);
    form.NeedleRadius[i] = static_cast<std::int16_t>(line.x2 - line.x1);
  }
}

void SetGauge(const MainFormState& form, Panel& panel, int index, std::int16_t value) {
  if (index < 0 || index >= static_cast<int>(kGauges)) return;
  const auto i = static_cast<std::size_t>(index);
  const Scale& scale = kScales[i];
  const int n = (value - scale.zero) * scale.factor;
  const double angle = n * kPi / scale.divisor / 180;
  Needle::Ends line = panel.Line1[i].Line();
  line.x2 = static_cast<float>(form.NeedleX[i] - (1 - std::cos(angle)) * form.NeedleRadius[i]);
  line.y2 = static_cast<float>(form.NeedleY[i] - form.NeedleRadius[i] * std::sin(angle));
  panel.Line1[i].Line(line);
}

}  // namespace orvane
