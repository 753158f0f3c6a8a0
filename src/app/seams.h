// The seams that the engines of the program share: what lies outside, by reference.
#pragma once

#include "platform/clock.h"
#include "platform/dialogs.h"
#include "platform/disk.h"
#include "platform/forms.h"
#include "platform/host.h"
#include "platform/inspector.h"
#include "platform/local_server.h"
#include "platform/serial_port.h"
#include "platform/timer.h"

namespace orvane {

// The timers of the main form.
struct Timers {
  Timer& poll_timer;       // 2000 ms: poll and link watchdog
  Timer& countdown_timer;  // 1000 ms, while a fault stands: the count to shutdown
  Timer& schedule_timer;   // 5000 ms: the schedule
  Timer& dial_timer;       // 5000 ms, one shot: the delay before an emergency call
  Timer& clock_timer;      // 1000 ms: the clock on the panel

  // Disables all of them.
  void Stop() const {
    for (Timer* timer :
         {&poll_timer, &countdown_timer, &schedule_timer, &dial_timer, &clock_timer}) {
      timer->Enabled(false);
    }
  }
};

struct Seams {
  Timers timers;
  Timer& alert_timer;  // 1000 ms, while the alert stands
  Timer& modem_timer;  // 20 ms, while an emergency call runs: one look at the modem
  SerialPort& ups_port;
  SerialPort& modem_port;
  Clock& clock;
  Disk& disk;
  Host& host;
  Dialogs& dialogs;
  Forms& forms;
  LocalServer& share_server;  // on which upsd calls
  Inspector& inspector;
};

}  // namespace orvane
