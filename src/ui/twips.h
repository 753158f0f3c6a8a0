// Places on forms. Forms are laid out in twips, 15 to a logical pixel where the desktop's font has
// its usual size.
#pragma once

#include <QRect>
#include <QRectF>

namespace orvane {

inline constexpr double kTwipsPerPixel = 15;

// A control's place in its container, in twips.
struct Place {
  int left = 0;
  int top = 0;
  int width = 0;
  int height = 0;

  constexpr int Right() const { return left + width; }
  constexpr int Bottom() const { return top + height; }
  // The same place as seen from inside a container that stands at `origin`.
  constexpr Place Inside(const Place& origin) const {
    return {left - origin.left, top - origin.top, width, height};
  }
};

// How much larger than as designed everything is, as the desktop's font wants it. Set before the
// first window (ui/look.h).
inline double form_scale = 1;

inline double Pixels(double twips) {
  return twips / kTwipsPerPixel * form_scale;
}

// On whole logical pixels, each edge rounded by itself so that neighbours meet.
inline QRect Pixels(const Place& place) {
  const QPoint top_left(qRound(Pixels(place.left)), qRound(Pixels(place.top)));
  const QPoint bottom_right(qRound(Pixels(place.Right())), qRound(Pixels(place.Bottom())));
  return {top_left, QSize(bottom_right.x() - top_left.x(), bottom_right.y() - top_left.y())};
}

}  // namespace orvane
