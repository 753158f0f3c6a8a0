// How the windows look: their fonts, and the colours that no state dictates.
#pragma once

#include <QColor>
#include <QFont>
#include <QStringList>

#include "app/panel.h"

class QApplication;

namespace orvane::look {

// Grounds and lines, from the window up.
inline constexpr QColor kWindow{244, 246, 248};
inline constexpr QColor kBoard{225, 229, 234};  // the grey board of the bars
inline constexpr QColor kCard{255, 255, 255};   // dials, information, state strip
inline constexpr QColor kHairline{206, 212, 220};
inline constexpr QColor kEdge{176, 184, 194};
inline constexpr QColor kTrough{250, 251, 252};

// Words.
inline constexpr QColor kInk{29, 36, 46};
inline constexpr QColor kQuietInk{88, 99, 113};

// What is chosen, and the program's own blue.
inline constexpr QColor kAccent{38, 84, 186};

// Zones of a scale, and the grounds behind a fault.
inline constexpr QColor kDangerZone{236, 110, 98};
inline constexpr QColor kDangerTint{253, 229, 226};
inline constexpr QColor kFaultGround{255, 238, 236};

// Given colours of the panel.
inline constexpr Colour kBarGreen = 32768;
inline constexpr Colour kNeedleBlue = 16711680;
inline constexpr Colour kReadOutGround = 12582912;

inline constexpr int kTextSize = 12;  // logical pixels, of most words

// A colour of the panel on the screen, to the bit.
constexpr QColor Exact(Colour colour) {
  return QColor(static_cast<int>(colour & 255), static_cast<int>(colour >> 8 & 255),
                static_cast<int>(colour >> 16 & 255));
}

// The colour to write with: as Exact, but black, which stands for "no colour given", is the
// windows' own ink.
constexpr QColor Ink(Colour colour) {
  return colour == kBlack ? kInk : Exact(colour);
}

// The windows' font at a size in logical pixels.
QFont Face(int pixel_size, bool bold = false);

// From now on fonts come from these families alone, the first that is there. For pictures that
// have to come out alike on every machine.
void UseFamilies(const QStringList& families);

// Gives the program its style, palette, font and icon. Before the first window.
void Apply(QApplication& application);

}  // namespace orvane::look
