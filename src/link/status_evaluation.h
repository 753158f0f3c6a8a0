// A decoded status reply turned into the state of the system: state lines, warnings, the count to
// shutdown, the request for a dial, log line and daily record, and a computer that stays awake
// while the mains has failed. It keeps no state of its own: what
// the panel shows is the state, and every reply writes all of it again.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "app/panel.h"
#include "app/seams.h"
#include "app/state.h"
#include "records/journals.h"

namespace orvane {

class StatusEvaluation {
 public:
  StatusEvaluation(State& state, Panel& panel, Journals& journals, const Seams& seams)
      : state_(state),
        panel_(panel),
        journals_(journals),
        timers_(seams.timers),
        host_(seams.host) {}

  // Overload warning, directly after the load value: shown from 100 percent on. A load that could
  // not be read counts as one above.
  void Overload(std::optional<std::int16_t> load);

  // The four status bits in the order mains, battery, bypass, UPS, then the link. A bit is set
  // where its column holds "1". `bits` has four characters.
  void Evaluate(std::string_view bits);

 private:
  void EndCount();
  void React(Fault fault);

  State& state_;
  Panel& panel_;
  Journals& journals_;
  Timers timers_;
  Host& host_;
};

}  // namespace orvane
