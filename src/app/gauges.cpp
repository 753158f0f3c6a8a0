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

constexpr PerGauge<Scale> kScales = {
    {{{200, 90, 50}, {200, 90, 50}, {0, 90, 125}, {0, 9, 10}, {30, 90, 50}, {0, 90, 75}}}};

constexpr double kPi = 3.1416;

}  // namespace

void CaptureNeedles(const Panel& panel, MainFormState& form) {
  for (const Gauge gauge : kGauges) {
    const Needle::Ends& line = panel.needles[gauge].Line();
    form.NeedleX[gauge] = static_cast<std::int16_t>(line.x2);
    form.NeedleY[gauge] = static_cast<std::int16_t>(line.y2);
    form.NeedleRadius[gauge] = static_cast<std::int16_t>(line.x2 - line.x1);
  }
}

void SetGauge(const MainFormState& form, Panel& panel, Gauge gauge, std::int16_t value) {
  const Scale& scale = kScales[gauge];
  const int n = (value - scale.zero) * scale.factor;
  const double angle = n * kPi / scale.divisor / 180;
  const int radius = form.NeedleRadius[gauge];
  Needle::Ends line = panel.needles[gauge].Line();
  line.x2 = static_cast<float>(form.NeedleX[gauge] - (1 - std::cos(angle)) * radius);
  line.y2 = static_cast<float>(form.NeedleY[gauge] - radius * std::sin(angle));
  panel.needles[gauge].Line(line);
}

}  // namespace orvane
