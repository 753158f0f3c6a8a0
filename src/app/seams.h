// The seams that the engines of the program share: what lies outside, by reference.
#pragma once

#include "platform/clock.h"
#include "platform/dialogs.h"
#include "platform/disk.h"
#include "platform/forms.h"
#include "platform/host.h"
#include "platform/serial_port.h"
#include "platform/timer.h"

namespace orvane {

// The timers of `frmMain`.
struct Timers {
  Timer& Timer1;     // 2000 ms: poll and link watchdog
  Timer& Timer2;     // 1000 ms, while a fault stands: the shutdown countdown
  Timer& Timer3;     // 5000 ms: the schedule
  Timer& TimerDial;  // 5000 ms, one shot: the delay before an emergency dial
  Timer& tmrDate;    // 1000 ms: the clock on the panel

  // Disables all of them.
  void Stop() const {
    for (Timer* timer : {&Timer1, &Timer2, &Timer3, &TimerDial, &tmrDate}) timer->Enabled(false);
  }
};

struct Seams {
  Timers timers;
  Timer& alert_timer;   // 1000 ms: `Timer1` of frmAlert, while that form lives
  Timer& dial_pass;     // 20 ms, while an emergency call runs: one look at the modem
  SerialPort& MSComm1;  // the UPS line
  SerialPort& MSComm2;  // the modem line
  Clock& clock;
  Disk& disk;
  Host& host;
  Dialogs& dialogs;
  Forms& forms;
};

}  // namespace orvane
