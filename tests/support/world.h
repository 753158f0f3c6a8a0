// Everything that a test of the logic stands on: virtual time, ports, disk, host, windows, and the
// state and panel of one program.
#pragma once

#include "app/panel.h"
#include "app/seams.h"
#include "app/state.h"
#include "records/journals.h"
#include "support/fake_inspector.h"
#include "support/fake_local_server.h"
#include "support/fake_serial_port.h"
#include "support/fake_system.h"
#include "support/fake_time.h"
#include "support/memory_disk.h"

namespace orvane::test {

struct World {
  FakeTime time;
  FakeTimer poll_timer{time}, countdown_timer{time}, schedule_timer{time}, dial_timer{time},
      clock_timer{time};
  FakeTimer alert_timer{time};
  FakeTimer modem_timer{time};
  FakeSerialPort ups_port, modem_port;
  MemoryDisk disk;
  Events events;
  FakeHost host{events};
  FakeDialogs dialogs{events};
  FakeForms forms{events, dialogs};
  FakeLocalServer share_server{time, events};
  FakeInspector inspector;
  Seams seams{{poll_timer, countdown_timer, schedule_timer, dial_timer, clock_timer},
              alert_timer,
              modem_timer,
              ups_port,
              modem_port,
              time,
              disk,
              host,
              dialogs,
              forms,
              share_server,
              inspector};
  State state;
  Panel panel;
  Journals journals{disk, time, host.ProgramDirectory()};

  std::string Log() const { return disk.Read(journals.LogPath()).value_or(""); }
  std::string DateRec() const { return disk.Read(journals.DateRecPath()).value_or(""); }
};

}  // namespace orvane::test
