// Has Qt's event loop serve a message bus.
#pragma once

#include <QSocketNotifier>
#include <QTimer>

#include "platform/linux/bus.h"

namespace orvane {

class BusNotifier {
 public:
  // Serves `bus`, which has to outlive this object, as long as this object lives.
  explicit BusNotifier(Bus& bus);
  ~BusNotifier();
  BusNotifier(const BusNotifier&) = delete;
  BusNotifier& operator=(const BusNotifier&) = delete;

 private:
  void Serve();
  void Watch();

  Bus& bus_;
  QSocketNotifier read_;
  QSocketNotifier write_;
  QTimer due_;
};

}  // namespace orvane
