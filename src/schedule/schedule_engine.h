// What the schedule does when its times come.
#pragma once

#include <functional>

#include "app/seams.h"
#include "app/state.h"
#include "protect/shutdown.h"
#include "records/journals.h"

namespace orvane {

class ScheduleEngine {
 public:
  ScheduleEngine(const State& state, Journals& journals, Shutdown& shutdown, const Seams& seams)
      : state_(state), journals_(journals), shutdown_(shutdown), seams_(seams) {}

  // Run when the UPS has got the command for a self-test.
  std::function<void()> OnSelfTest;

  // Compares the clock with the tables and acts on what falls due in this minute: a self-test, a
  // switch-on, a switch-off, in this order, each of them that is due. Keeps nothing from one tick
  // to the next, so that every tick inside a due minute acts again. A journal that cannot be
  // written and a command that the port does not take are reported on standard error, and the tick
  // goes on.
  void OnSchedule();

  // Whether anything can ever fall due.
  bool HoldsAnything() const;

 private:
  void SwitchOn();
  bool Send(std::string_view command);

  const State& state_;
  Journals& journals_;
  Shutdown& shutdown_;
  Seams seams_;
};

}  // namespace orvane
