// The emergency call: when a fault lasts, a modem on a line of its own lets a telephone ring.
#pragma once

#include <chrono>
#include <string>

#include "app/panel.h"
#include "app/seams.h"
#include "app/state.h"
#include "dial/reply_buffer.h"

namespace orvane {

// A run of `Dial` never holds the event loop: it moves on by the ticks of `modem_timer`, one look
// at the modem for each. It is the only one to enable that timer.
//
// `dial_timer` stays enabled while a run goes on and is disabled when the run is over, so that only
// a fault that shows after that arms it anew. Whoever disables it earlier disarms the dialler: the
// run ends where it stands, with nothing more sent or shown.
class Dialler {
 public:
  Dialler(const State& state, Panel& panel, const Seams& seams)
      : state_(state), panel_(panel), seams_(seams) {}

  // Puts the ticks of `dial_timer` and of the passes on their timers.
  void Attach();

  // Five seconds after a fault asked for a call: begins a run if the fault named by `DialReason`
  // does not show as normal. Does nothing while a run goes on.
  void OnDialDelay();

  // Begins a run: up to four attempts to ring `PhoneCode` by the modem on the port of slot 8. What
  // comes of it is shown on the status line. Returns at once; without a number, or without a port
  // that opens, the run is over by then. Not to be called while a run goes on.
  void Dial();

  // A run goes on.
  bool Running() const { return phase_ != Phase::kIdle; }

  // Ends a run where it stands, if there is one. The port is left as it is.
  void Stop();

 private:
  enum class Phase { kIdle, kWaiting, kRinging, kHangingUp };

  void Show(Message message);
  bool OpenPort();
  void BeginAttempt();
  void Pass();
  void Look();
  void Ring();
  void HangUp();
  void EndAttempt();
  void Mark();
  int SecondsField();

  const State& state_;
  Panel& panel_;
  Seams seams_;

  // One run.
  Phase phase_ = Phase::kIdle;
  std::string dial_text_;
  ReplyBuffer reply_;                // what the modem answered in this attempt
  std::string arrived_;              // what one look found, kept for its capacity
  int passes_ = 0;                   // looks of this attempt
  int attempts_ = 0;                 // attempts that were hung up
  bool go_on_ = false;               // no attempt has succeeded yet
  std::chrono::sys_seconds mark_{};  // when the present wait began
  std::chrono::sys_seconds seen_{};  // the clock at the last look at it
};

}  // namespace orvane
