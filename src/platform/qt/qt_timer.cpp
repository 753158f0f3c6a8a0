#include "platform/qt/qt_timer.h"

namespace orvane {

QtTimer::QtTimer() {
  timer_.setTimerType(Qt::CoarseTimer);
  timer_.setInterval(1000);
  QObject::connect(&timer_, &QTimer::timeout, [this] {
    if (Tick) Tick();
  });
}

void QtTimer::Enabled(bool enabled) {
  if (enabled == timer_.isActive()) return;
  if (enabled) {
    timer_.start();
  } else {
    timer_.stop();
  }
}

void QtTimer::Interval(int milliseconds) {
  timer_.setInterval(milliseconds);
}

}  // namespace orvane
