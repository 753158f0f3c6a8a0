#include "link/mirror.h"

#include <cmath>
#include <limits>

#include "link/numbers.h"

namespace orvane {
namespace {

// A value's way to the bar face: the width is (value - zero) x scale + 15, and never less than 15
// for a bar that starts above 0.
struct MirrorRow {
  std::size_t index;
  Label Panel::*figure;
  Bar Panel::*bar;
  double zero;
  double scale;
};

constexpr MirrorRow kMirror[] = {
    {kInput, &Panel::lblApcAc, &Panel::shpInput, 0, 14.4},
    {kOutput, &Panel::lblApcOutput, &Panel::shpOutput, 0, 14.4},
    {kLoad, &Panel::lblApcLoad, &Panel::shpLoad, 0, 31.7},
    {kBattery, &Panel::lblApcBatt, &Panel::shpBatt, 0, 47.55},
    {kTemperature, &Panel::lblApcTemp, &Panel::shpTemp, 0, 63.4},
    {kFrequency, &Panel::lblApcFreq, &Panel::shpFreq, 40, 190.2},
};

double Width(const MirrorRow& row, double value) {
  if (row.zero > 0 && value < row.zero) return Bar::kRestWidth;
  return (value - row.zero) * row.scale + Bar::kRestWidth;
}

}  // namespace

double BarWidth(std::size_t index, double value) {
  for (const MirrorRow& row : kMirror) {
    if (row.index == index) return Width(row, value);
  }
  return Bar::kRestWidth;
}

void MirrorValues(Panel& panel) {
  for (const MirrorRow& row : kMirror) {
    const std::string& caption = panel.Label2[row.index].Caption();
    (panel.*row.figure).Caption(caption);
    const auto value = ReadNumber(caption);
    if (!value) continue;
    const double width = Width(row, *value);
    // A width beyond a 32-bit float is none.
    if (std::abs(width) > std::numeric_limits<float>::max()) continue;
    (panel.*row.bar).Width(static_cast<float>(width));
  }
}

void ValueMirror::Label2_Change() {
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
