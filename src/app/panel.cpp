#include "app/panel.h"

namespace orvane {
namespace {

// Pivot and rest tip of each needle on the dials' picture, in twips of the form.
constexpr Needle::Ends kRestLines[kGauges] = {
    {615, 2325, 1410, 2325},  {3315, 2325, 4095, 2325}, {5910, 2340, 6675, 2340},
    {5895, 3990, 6705, 3990}, {630, 4005, 1350, 4005},  {3330, 4005, 4065, 4005},
};

constexpr Colour kReadOutWhite = 16777215;

}  // namespace

void Label::Design(std::string_view caption, Colour colour, bool visible) {
  caption_ = caption;
  fore_color_ = colour;
  visible_ = visible;
  if (Observer) Observer();
}

void Panel::Design() {
  for (Label* state : {&lblAc, &lblBatt, &lblBattIn, &lblUps}) state->Design("", kBlue, true);
  lblConnect.Design("", kRed, true);
  for (Label& read_out : Label2) read_out.Design("0", kReadOutWhite, true);
  for (Label* figure :
       {&lblApcAc, &lblApcOutput, &lblApcLoad, &lblApcBatt, &lblApcFreq, &lblApcTemp}) {
    figure->Design("", kBlack, true);
  }
  for (Bar* bar : {&shpInput, &shpOutput, &shpLoad, &shpBatt, &shpFreq, &shpTemp}) {
    bar->Width(Bar::kRestWidth);
  }
  for (std::size_t i = 0; i < kGauges; ++i) Line1[i].Line(kRestLines[i]);
  for (Label& field : Label7) field.Design("UnKnown", kBlack, true);
  for (Label& warning : lblAlert) warning.Design("", kRed, false);
  for (Label* line : {&Label13, &Label14, &Label15}) line->Design("", kBlack, true);
  picAPC.Visible(true);
  Image2.Visible(true);
}

}  // namespace orvane
