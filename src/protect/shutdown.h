// The way down: from the decision to the request to the operating system.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "app/panel.h"
#include "app/seams.h"
#include "app/state.h"
#include "records/journals.h"

namespace orvane {

class Shutdown {
 public:
  Shutdown(const State& state, Panel& panel, Journals& journals, const Seams& seams)
      : state_(state), panel_(panel), journals_(journals), seams_(seams) {}

  // Run by ShutdownSequence: at its first moment, when the UPS has its command, and before the
  // operating system is asked to go down.
  std::function<void()> OnBegin;
  std::function<void()> OnUpsTold;
  std::function<void()> OnEnd;

  // Stops the program's own activity, logs `log_line`, writes a daily record where
  // `record` holds one, sends `ShutdownCommand` to the UPS, lets the companion save the user's
  // work and asks the operating system to go down. Blocks until the companion is done; no event of
  // the program is served meanwhile. A step that fails is reported on standard error and the next
  // one runs. A second call does nothing: nothing comes back from the first.
  void ShutdownSequence(Message log_line, std::optional<RecordCode> record = std::nullopt);

  // The sequence has started.
  bool Begun() const { return begun_; }

 private:
  bool TellUps();
  void SettleJournal(const std::string& path, bool written);
  void RunCompanion();

  const State& state_;
  Panel& panel_;
  Journals& journals_;
  Seams seams_;
  bool begun_ = false;
};

}  // namespace orvane
