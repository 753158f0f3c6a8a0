// The system's requests to end: SIGTERM, SIGINT and SIGHUP.
#pragma once

#include <QSocketNotifier>
#include <functional>
#include <memory>

namespace orvane {

class EndSignals {
 public:
  // Runs `on_end` from the event loop for each of the signals that arrives from now on, also while
  // a box stands open. A signal that this process was started to ignore stays ignored. One object
  // of this kind at a time.
  explicit EndSignals(std::function<void()> on_end);
  ~EndSignals();
  EndSignals(const EndSignals&) = delete;
  EndSignals& operator=(const EndSignals&) = delete;

 private:
  std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace orvane
