// Everything that a test of the logic stands on: virtual time, ports, disk, host, windows, and the
// state and panel of one program.
#pragma once

#include "app/panel.h"
#include "app/seams.h"
#include "app/state.h"
#include "records/journals.h"
#include "support/fake_serial_port.h"
#include "support/fake_system.h"
#include "support/fake_time.h"
#include "support/memory_disk.h"

namespace orvane::test {

struct World {
  FakeTime time;
  FakeTimer Timer1{time}, Timer2{time}, Timer3{time}, TimerDial{time}, tmrDate{time};
  FakeTimer alert_timer{time};
  FakeTimer dial_pass{time};
  FakeSerialPort MSComm1, MSComm2;
  MemoryDisk disk;
  Events events;
  FakeHost host{events};
  FakeDialogs dialogs{events};
  FakeForms forms{events, dialogs};
  Seams seams{{Timer1, Timer2, Timer3, TimerDial, tmrDate},
              alert_timer,
              dial_pass,
              MSComm1,
              MSComm2,
              time,
              disk,
              host,
              dialogs,
              forms};
  State state;
  Panel panel;
  Journals journals{disk, time, host.ProgramDirectory()};

  std::string Log() const { return disk.Read(journals.LogPath()).value_or(""); }
  std::string DateRec() const { return disk.Read(journals.DateRecPath()).value_or(""); }
};

}  // namespace orvane::test
