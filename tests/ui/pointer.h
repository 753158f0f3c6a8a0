// The user's mouse and keyboard, for tests: events go to the widget under the point and on to those
// beneath it, as the window system's do.
#pragma once

#include <QApplication>
#include <QMouseEvent>
#include <QWidget>

namespace orvane::test {

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

inline QPointF Middle(const QWidget& widget) {
  return QRectF(widget.rect()).center();
}

}  // namespace orvane::test
