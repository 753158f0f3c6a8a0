// The user's eye, for tests: the parts of a window by their names, and what they look like.
#pragma once

#include <QApplication>
#include <QImage>
#include <QWidget>
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

// The pixels of one colour.
inline int CountOf(const QColor& colour, const QImage& picture) {
  int count = 0;
  for (int x = 0; x < picture.width(); ++x) {
    for (int y = 0; y < picture.height(); ++y) count += picture.pixelColor(x, y) == colour;
  }
  return count;
}

}  // namespace orvane::test
