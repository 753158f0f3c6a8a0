// The panel: the named fields of the main form. The logic writes and reads them, windows observe
// them. What mains, battery, bypass, UPS and link are doing stands here and nowhere else.
#pragma once

#include <cstdint>
#include <functional>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>

#include "app/enum_array.h"

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

// One of the two faces of the measured values: the bars or the dials.
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

// The measured values, in the order in which tables list them.
enum class Gauge { kInput, kOutput, kLoad, kBattery, kFrequency, kTemperature };
inline constexpr Gauge kGauges[] = {Gauge::kInput,   Gauge::kOutput,    Gauge::kLoad,
                                    Gauge::kBattery, Gauge::kFrequency, Gauge::kTemperature};
template <class T>
using PerGauge = EnumArray<Gauge, T, std::size(kGauges)>;

// The UPS's own data.
enum class UpsDatum {
  kBatteryCount,
  kModel,
  kVersion,
  kRatedVoltage,
  kRatedPower,
  kBatteryVoltage
};
inline constexpr UpsDatum kUpsData[] = {UpsDatum::kBatteryCount, UpsDatum::kModel,
                                        UpsDatum::kVersion,      UpsDatum::kRatedVoltage,
                                        UpsDatum::kRatedPower,   UpsDatum::kBatteryVoltage};
template <class T>
using PerUpsDatum = EnumArray<UpsDatum, T, std::size(kUpsData)>;

// How well the computer is protected.
enum class Grade {
  kReady,      // green
  kAttention,  // amber: something is to be looked at
  kNotReady,   // red: the protection would fail
};

// The shield in the menu bar: the worst of the points of the protection check, and how many of them
// are not green.
class Shield : public Control {
 public:
  Grade Worst() const { return state_.worst; }
  int Points() const { return state_.points; }
  // What it says; it changes with the language, too.
  const std::string& Summary() const { return state_.summary; }

  void Show(Grade worst, int points, std::string summary) {
    Set(state_, Shown{worst, points, std::move(summary)});
  }

 private:
  struct Shown {
    Grade worst = Grade::kAttention;
    int points = 0;
    std::string summary;
    bool operator==(const Shown&) const = default;
  };

  Shown state_;
};

// The icon in the tray of the desktop: what it shows, and in words with the seconds that are left.
enum class TrayFace { kMains, kBattery, kFault, kSilent };

class Tray : public Control {
 public:
  TrayFace Face() const { return state_.face; }
  const std::string& Tip() const { return state_.tip; }

  void Show(TrayFace face, std::string tip) { Set(state_, Shown{face, std::move(tip)}); }

 private:
  struct Shown {
    TrayFace face = TrayFace::kSilent;
    std::string tip;
    bool operator==(const Shown&) const = default;
  };

  Shown state_;
};

struct Panel {
  Panel() { Design(); }

  // Every field but the words of SetCaptions as it stands before the first reply: state lines
  // empty, read-outs at 0, needles and bars at rest, the bar face up. Runs no Change event.
  void Design();

  // State lines, each with its caption.
  Label mains_caption, mains;
  Label battery_caption, battery;
  Label bypass_caption, bypass;  // on line or bypass
  Label ups_caption, ups;
  Label link_caption, link;

  // Measured values: the read-outs of the dials, and the figures of the bars, which copy them.
  PerGauge<Label> read_outs;
  PerGauge<Label> bar_figures;
  PerGauge<Bar> bars;
  PerGauge<Needle> needles;

  // Captions of the two faces. Of the dials, those of the voltages have their unit beside them.
  PerGauge<Label> dial_captions;
  Label input_unit, output_unit;
  PerGauge<Label> bar_captions;
  Face bar_face;  // covers the dials while it is visible
  Face dial_face;

  // The UPS's own data.
  Caption information_heading;
  PerUpsDatum<Label> information_captions;
  PerUpsDatum<Label> information;

  Label supply_warning;  // bypass or mains
  Label overload_warning;

  Label status_line;  // what the program is doing
  Label port_line;    // the UPS port
  Label clock;        // date and time

  Shield shield;
  Tray tray;

  Caption system_menu, settings_entry, beeper_entry, exit_entry;
  Caption schedule_menu, week_entry, special_days_entry, self_tests_entry;
  Caption analysis_menu, log_entry, day_history_entry, history_entry, shutdown_report_entry;
  Caption control_menu, short_test_entry, test_to_low_entry, cancel_test_entry, shutdown_entry,
      check_entry;
  Caption help_menu, about_entry;
};

}  // namespace orvane
