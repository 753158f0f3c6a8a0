#include "link/mirror.h"

#include <cmath>
#include <limits>

#include "link/numbers.h"

namespace orvane {
namespace {

// A value's way to the bar face: the width is (value - zero) x scale + 15, and never less than 15
// for a bar that starts above 0.
struct Scale {
  double zero;
  double factor;
};

constexpr PerGauge<Scale> kScales = {
    {{{0, 14.4}, {0, 14.4}, {0, 31.7}, {0, 47.55}, {40, 190.2}, {0, 63.4}}}};

}  // namespace

double BarWidth(Gauge gauge, double value) {
  const Scale& scale = kScales[gauge];
  if (scale.zero > 0 && value < scale.zero) return Bar::kRestWidth;
  return (value - scale.zero) * scale.factor + Bar::kRestWidth;
}

void MirrorValues(Panel& panel) {
  for (const Gauge gauge : kGauges) {
    const std::string& caption = panel.read_outs[gauge].Caption();
    panel.bar_figures[gauge].Caption(caption);
    const auto value = ReadNumber(caption);
    if (!value) continue;
    const double width = BarWidth(gauge, *value);
    // A width beyond a 32-bit float is none.
    if (std::abs(width) > std::numeric_limits<float>::max()) continue;
    panel.bars[gauge].Width(static_cast<float>(width));
  }
}

void ValueMirror::OnReadOutChange() {
  if (open_batches_ > 0) {
    due_ = true;
  } else {
    MirrorValues(panel_);
  }
}

ValueMirror::Batch::~Batch() {
  if (--mirror_.open_batches_ > 0 || !mirror_.due_) return;
  mirror_.due_ = false;
  MirrorValues(mirror_.panel_);
}

}  // namespace orvane
