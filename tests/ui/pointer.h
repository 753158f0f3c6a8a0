// The user's eye and mouse, for tests: the parts of a window by their names, and events that go to
// the widget under the point and on to those beneath it, as the window system's do.
#pragma once

#include <QApplication>
#include <QImage>
#include <QMouseEvent>
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

struct Press {
  Qt::MouseButton button = Qt::LeftButton;
  Qt::KeyboardModifiers modifiers = Qt::NoModifier;
};

inline void SendMouse(QWidget& widget, QEvent::Type type, QPointF at, const Press& press) {
  QMouseEvent event(type, at, widget.mapToGlobal(at), press.button,
                    type == QEvent::MouseButtonRelease ? Qt::NoButton : press.button,
                    press.modifiers);
  QApplication::sendEvent(&widget, &event);
}

inline void Click(QWidget& widget, QPointF at, const Press& press = {}) {
  SendMouse(widget, QEvent::MouseButtonPress, at, press);
  SendMouse(widget, QEvent::MouseButtonRelease, at, press);
}

inline void DoubleClick(QWidget& widget, QPointF at, const Press& press = {}) {
  Click(widget, at, press);
  SendMouse(widget, QEvent::MouseButtonDblClick, at, press);
  SendMouse(widget, QEvent::MouseButtonRelease, at, press);
}

// The pixels of one colour.
inline int CountOf(const QColor& colour, const QImage& picture) {
  int count = 0;
  for (int x = 0; x < picture.width(); ++x) {
    for (int y = 0; y < picture.height(); ++y) count += picture.pixelColor(x, y) == colour;
  }
  return count;
}

inline QPointF Middle(const QWidget& widget) {
  return QRectF(widget.rect()).center();
}

}  // namespace orvane::test
