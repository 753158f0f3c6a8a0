// The panel: the named fields of the main form. The logic writes and reads them, windows observe
// them. What mains, battery, bypass, UPS and link are doing stands here and nowhere else.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace orvane {

// Red + 256 x green + 65536 x blue.
using Colour = std::uint32_t;
inline constexpr Colour kBlack = 0;
inline constexpr Colour kRed = 255;        // a fault, or a dead link
inline constexpr Colour kBlue = 16711680;  // the good state

// Something on the form that a window may watch. `Observer` belongs to the window; it runs after a
// property has taken a different value.
class Control {
 public:
  std::function<void()> Observer;

 protected:
  template <class T, class V>
  void Set(T& property, const V& value) {
    if (property == value) return;
    property = value;
    if (Observer) Observer();
  }
};

// A menu entry or any other control that carries nothing but its words.
class Caption : public Control {
 public:
  const std::string& Text() const { return text_; }
  void Text(std::string_view text) { Set(text_, text); }

 private:
  std::string text_;
};

// A label. `Change` belongs to the logic: it runs inside the write of the caption, only when the
// text differs, and sees the colour of the state that is being left.
class Label : public Control {
 public:
  std::function<void()> Change;

  const std::string& Caption() const { return caption_; }
  void Caption(std::string_view caption) {
    if (caption_ == caption) return;
    caption_ = caption;
    if (Observer) Observer();
    if (Change) Change();
  }

  Colour ForeColor() const { return fore_color_; }
  void ForeColor(Colour colour) { Set(fore_color_, colour); }

  bool Visible() const { return visible_; }
  void Visible(bool visible) { Set(visible_, visible); }

  // Back to a design caption and colour, without a Change event.
  void Design(std::string_view caption, Colour colour, bool visible);

 private:
  std::string caption_;
  Colour fore_color_ = kBlack;
  bool visible_ = true;
};

// One of the two faces: the board with the bars (`picAPC`), the picture with the dials (`Image2`).
class Face : public Control {
 public:
  bool Visible() const { return visible_; }
  void Visible(bool visible) { Set(visible_, visible); }

  const std::string& ToolTipText() const { return tool_tip_; }
  void ToolTipText(std::string_view text) { Set(tool_tip_, text); }

 private:
  bool visible_ = true;
  std::string tool_tip_;
};

// A needle: a line from its pivot (x1, y1) to its tip (x2, y2), in twips of the form.
class Needle : public Control {
 public:
  struct Ends {
    float x1 = 0, y1 = 0, x2 = 0, y2 = 0;
    bool operator==(const Ends&) const = default;
  };

  const Ends& Line() const { return line_; }
  void Line(const Ends& line) { Set(line_, line); }

 private:
  Ends line_;
};

// A bar inside its trough; only its width moves.
class Bar : public Control {
 public:
  static constexpr float kRestWidth = 15;

  float Width() const { return width_; }
  void Width(float twips) { Set(width_, twips); }

 private:
  float width_ = kRestWidth;
};

// Order of `Label2`, of the needles and of SetGauge.
inline constexpr int kInput = 0;
inline constexpr int kOutput = 1;
inline constexpr int kLoad = 2;
inline constexpr int kBattery = 3;
inline constexpr int kFrequency = 4;
inline constexpr int kTemperature = 5;
inline constexpr std::size_t kGauges = 6;

struct Panel {
  Panel() { Design(); }

  // Every field but the words of SetCaptions as it stands before the first reply: state lines
  // empty, read-outs at 0, needles and bars at rest, the bar face up. Runs no Change event.
  void Design();

  // State strip: a caption, then the state.
  Label Label3, lblAc;       // mains
  Label Label4, lblBatt;     // battery
  Label Label5, lblBattIn;   // on line or bypass
  Label Label6, lblUps;      // UPS
  Label Label8, lblConnect;  // link

  // Measured values: the read-outs of the dials, and the figures of the bars, which copy them.
  std::array<Label, kGauges> Label2;
  Label lblApcAc, lblApcOutput, lblApcLoad, lblApcBatt, lblApcFreq, lblApcTemp;
  Bar shpInput, shpOutput, shpLoad, shpBatt, shpFreq, shpTemp;
  std::array<Needle, kGauges> Line1;

  // Captions of the two faces: `Label9` on the dials, `lblApcCap` on the rows of bars.
  std::array<Label, 8> Label9;
  std::array<Label, kGauges> lblApcCap;
  Face picAPC;
  Face Image2;

  // UPS information: number of batteries, model, version, rated voltage, rated power, battery
  // voltage.
  Caption Frame1;
  std::array<Label, 6> Label1;
  std::array<Label, 6> Label7;

  // Warnings: element 1 tells of bypass or mains, element 2 of overload. There is no element 0.
  std::array<Label, 3> lblAlert;

  Label Label13;  // what the program is doing
  Label Label14;  // the UPS port
  Label Label15;  // date and time

  Caption mnuSystem, mnuSetup, mnuOnOrOffBeep, mnuExit;
  Caption mnuTimer, mnuWeek, mnuSpecial, mnuTestTimer;
  Caption mnuDateAnalyse, mnuLog, mnuDateRecord, mnuShutRec;
  Caption mnuControl, mnuTest10S, mnuTestToLow, mnuCancelTest, mnuShutDown;
  Caption mnuHelp, mnuInternet, mnuEmail, mnuAbout;
};

}  // namespace orvane
