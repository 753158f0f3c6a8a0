// The user's eye, for tests: the parts of a window by their names, and what they look like.
#pragma once

#include <QApplication>
#include <QImage>
#include <QWidget>
#include <cstdlib>
#include <string>

namespace orvane::test {

// The part of a window with this name, which has to be there.
template <class Widget = QWidget>
Widget& Part(const QWidget& window, const QString& name) {
  auto* part = window.findChild<Widget*>(name);
  if (!part) qFatal("no %s in %s", qPrintable(name), qPrintable(window.objectName()));
  return *part;
}

inline std::string TextOf(const QWidget& window, const QString& name) {
  return Part(window, name).property("text").toString().toStdString();
}

// Puts a window on the screen and the keyboard into it.
inline void Present(QWidget& window) {
  window.show();
  window.activateWindow();
  QApplication::processEvents();
}

// Where two pictures differ by more than so much of any colour, 0 to 255; empty where they do not.
inline std::string Difference(const QImage& one, const QImage& other, int most) {
  if (one.size() != other.size()) return "in size";
  QRect where;
  for (int x = 0; x < one.width(); ++x) {
    for (int y = 0; y < one.height(); ++y) {
      const QColor a = one.pixelColor(x, y), b = other.pixelColor(x, y);
      if (std::abs(a.red() - b.red()) > most || std::abs(a.green() - b.green()) > most ||
          std::abs(a.blue() - b.blue()) > most) {
        where |= QRect(x, y, 1, 1);
      }
    }
  }
  if (where.isNull()) return {};
  return QString("at %1,%2 to %3,%4")
      .arg(where.left())
      .arg(where.top())
      .arg(where.right())
      .arg(where.bottom())
      .toStdString();
}

}  // namespace orvane::test
