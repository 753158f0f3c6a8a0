#include "app/panel.h"

namespace orvane {
namespace {

// Pivot and rest tip of each needle on the dials' picture, in twips of the form.
constexpr PerGauge<Needle::Ends> kRestLines = {{{{615, 2325, 1410, 2325},
                                                 {3315, 2325, 4095, 2325},
                                                 {5910, 2340, 6675, 2340},
                                                 {5895, 3990, 6705, 3990},
                                                 {630, 4005, 1350, 4005},
                                                 {3330, 4005, 4065, 4005}}}};

constexpr Colour kReadOutWhite = 16777215;

}  // namespace

void Label::Design(std::string_view caption, Colour colour, bool visible) {
  caption_ = caption;
  fore_color_ = colour;
  visible_ = visible;
  if (Observer) Observer();
}

void Panel::Design() {
  for (Label* state : {&mains, &battery, &bypass, &ups}) state->Design("", kBlue, true);
  link.Design("", kRed, true);
  for (const Gauge gauge : kGauges) {
    read_outs[gauge].Design("0", kReadOutWhite, true);
    bar_figures[gauge].Design("", kBlack, true);
    bars[gauge].Width(Bar::kRestWidth);
    needles[gauge].Line(kRestLines[gauge]);
  }
  for (Label& datum : information) datum.Design("UnKnown", kBlack, true);
  for (Label* warning : {&supply_warning, &overload_warning}) warning->Design("", kRed, false);
  for (Label* line : {&status_line, &port_line, &clock}) line->Design("", kBlack, true);
  bar_face.Visible(true);
}

}  // namespace orvane
