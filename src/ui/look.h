// How the windows look: their fonts, and the colours that no state dictates.
#pragma once

#include <QColor>
#include <QFont>
#include <QStringList>

#include "app/panel.h"

class QApplication;

namespace orvane::look {

// A colour of the windows by its meaning. It has the value of the design; where the desktop has
// colours of its own (dark, high contrast), it is made of those.
class Tone {
 public:
  // Where the colour lies between the ground and the ink of the desktop, in percent.
  constexpr Tone(const QColor& designed, int ink_percent)
      : designed_(designed), kind_(Kind::kMixed), percent_(ink_percent) {}

  // A given colour, the same on every desktop.
  constexpr Tone(const QColor& given) : designed_(given) {}

  // None.
  constexpr Tone() = default;

  // A given colour of words: lighter where the ground is dark.
  static constexpr Tone Words(const QColor& given) { return {given, Kind::kWords, 0}; }
  // The ground of fields, and what is marked, by the desktop.
  static constexpr Tone Base(const QColor& designed) { return {designed, Kind::kBase, 0}; }
  static constexpr Tone Accent(const QColor& designed) { return {designed, Kind::kAccent, 0}; }
  // A tint of a danger: the designed colour at so many percent on the desktop's ground.
  static constexpr Tone Tint(const QColor& designed, int percent) {
    return {designed, Kind::kTint, percent};
  }

  bool Valid() const { return designed_.isValid(); }
  operator QColor() const;  // on the desktop of this moment
  bool operator==(const Tone&) const = default;

 private:
  enum class Kind { kGiven, kMixed, kWords, kBase, kAccent, kTint };
  constexpr Tone(const QColor& designed, Kind kind, int percent)
      : designed_(designed), kind_(kind), percent_(percent) {}

  QColor designed_;
  Kind kind_ = Kind::kGiven;
  int percent_ = 0;
};

// Grounds and lines, from the window up.
inline constexpr Tone kWindow{{244, 246, 248}, 0};
inline constexpr Tone kBoard{{225, 229, 234}, 8};           // the grey board of the bars
inline constexpr Tone kCard = Tone::Base({255, 255, 255});  // dials, information, state strip
inline constexpr Tone kHairline{{206, 212, 220}, 25};
inline constexpr Tone kEdge{{176, 184, 194}, 40};
inline constexpr Tone kTrough = Tone::Base({250, 251, 252});

// Words.
inline constexpr Tone kInk{{29, 36, 46}, 100};
inline constexpr Tone kQuietInk{{88, 99, 113}, 75};
inline constexpr Tone kPlaceholderInk{{150, 158, 168}, 50};

// What is chosen, and the program's own blue.
inline constexpr Tone kAccent = Tone::Accent({38, 84, 186});

// Zones of a scale, and the grounds behind a fault.
inline constexpr Tone kDangerZone{QColor{236, 110, 98}};
inline constexpr Tone kDangerTint = Tone::Tint({253, 229, 226}, 30);
inline constexpr Tone kFaultGround = Tone::Tint({255, 238, 236}, 30);

// Given colours of the panel.
inline constexpr Colour kBarGreen = 32768;
inline constexpr Colour kNeedleBlue = 16711680;
inline constexpr Colour kReadOutGround = 12582912;

inline constexpr int kTextSize = 12;  // pixels of the design, of most words

// A colour of the panel on the screen, to the bit.
constexpr QColor Exact(Colour colour) {
  return QColor(static_cast<int>(colour & 255), static_cast<int>(colour >> 8 & 255),
                static_cast<int>(colour >> 16 & 255));
}

// The colour to write with: as Exact, but black, which stands for "no colour given", is the
// windows' own ink.
constexpr Tone Ink(Colour colour) {
  return colour == kBlack ? kInk : Tone::Words(Exact(colour));
}

// True where the desktop has a dark ground.
bool IsDark();

// The windows' font at a size in pixels of the design; as much larger as the desktop's font is.
QFont Face(int pixel_size, bool bold = false);

// From now on fonts come from these families alone, the first that is there. For pictures that
// have to come out alike on every machine.
void UseFamilies(const QStringList& families);

// Gives the program its style, font and icon, and its palette where the desktop has none of its
// own. Before the first window.
void Apply(QApplication& application);

}  // namespace orvane::look
