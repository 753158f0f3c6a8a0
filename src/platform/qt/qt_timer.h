// The timer control on the event loop. Periods are kept to within a few percent, so that timers of
// related periods share their wake-ups.
#pragma once

#include <QTimer>

#include "platform/timer.h"

namespace orvane {

class QtTimer : public Timer {
 public:
  QtTimer();

  bool Enabled() const override { return timer_.isActive(); }
  void Enabled(bool enabled) override;
  int Interval() const override { return timer_.interval(); }
  void Interval(int milliseconds) override;

 private:
  QTimer timer_;
};

}  // namespace orvane
