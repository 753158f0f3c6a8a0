// The rules by which a run of the program is judged: what the protection promises, said from
// outside, of the facts that the program met. Nothing here looks at how the program keeps them.
#pragma once

#include <array>
#include <chrono>
#include <optional>
#include <string>

#include "app/calendar.h"
#include "platform/clock.h"

namespace orvane::test {

using Moment = std::chrono::milliseconds;

// Which faults a status reply says are set: mains, battery, UPS.
using Faults = PerFault<bool>;

// The user's settings as far as a rule names them.
struct Wishes {
  int delay = 600;  // seconds from a mains failure to the shutdown
  int low = 120;    // seconds from a low battery to the shutdown
  int shutdown_minutes = 0;
  Faults dials{};  // the faults that ask for a call
  int modem_port = 2;
  Language language = Language::kEnglish;
  std::string number;

  std::string ShutdownCommand() const {
    if (shutdown_minutes == 0) return "S.5\r";
    return (shutdown_minutes < 10 ? "S0" : "S") + std::to_string(shutdown_minutes) + '\r';
  }
};

// What the panel says of the faults: as the last status reply had it, in the language of that time.
// A caption counts as normal only where it is the present language's word for it.
struct Shown {
  std::optional<Faults> faults;  // none: the link is lost
  Language language = Language::kEnglish;

  bool Normal(Fault fault, Language now) const {
    return faults && language == now && !(*faults)[fault];
  }
};

// When a timer has to tick: a whole period after it was started, and every period from there on. A
// tick that time jumped over comes once, late.
class Ticks {
 public:
  explicit Ticks(Moment period) : period_(period) {}
  void Start(Moment now) {
    if (!next_) next_ = now + period_;
  }
  void Stop() { next_.reset(); }
  void Jump(Moment to) {
    if (next_ && *next_ < to) next_ = to;
  }
  bool Running() const { return next_.has_value(); }
  // A tick comes now: false when none has to.
  bool Take(Moment now) {
    if (next_ != now) return false;
    *next_ += period_;
    return true;
  }
  bool Missed(Moment now) const { return next_ && *next_ < now; }

 private:
  Moment period_;
  std::optional<Moment> next_;
};

// The count to shutdown. A second of it passes with each tick while mains is not normal; the ticks
// go on from a fault to the next reply without one, and stand still while the link is down.
struct CountRule {
  Ticks ticks{std::chrono::seconds(1)};
  bool begun = false;  // a count stands, running or suspended
  int left = 0;

  void Reply(Moment now, const Faults& faults) {
    if (!faults[Fault::kMains]) {
      ticks.Stop();
      begun = false;
    }
    if (faults != Faults{}) ticks.Start(now);
  }

  // One second: true when the shutdown has to begin with it.
  bool Tick(const Shown& shown, const Wishes& wishes) {
    if (!begun) left = wishes.delay;
    begun = true;
    if (!shown.Normal(Fault::kMains, wishes.language)) {
      const bool shorten = !shown.Normal(Fault::kBatteryLow, wishes.language) && left > wishes.low;
      left = shorten ? wishes.low : left - 1;
    }
    return left <= 0;
  }
};

// The modem's line: one call at a time.
class CallRule {
 public:
  // A text goes out; `begins`: a run begins with it. What is wrong with that, empty if nothing.
  std::string Sent(const std::string& text, bool begins, Moment now) {
    constexpr Moment kPatience{50000};
    constexpr int kMostAttempts = 4;
    if (text == "ATH\r") {
      if (hung_up_) return "a line is hung up that no call holds";
      hung_up_ = true;
      return {};
    }
    if (!text.starts_with("ATDT") || !text.ends_with(";\r")) return "no command of the dialler";
    if (begins) attempts_ = 0;
    if (!hung_up_ && (!begins || now - last_dial_ < kPatience)) return "two calls at once";
    hung_up_ = false;
    last_dial_ = now;
    return ++attempts_ > kMostAttempts ? "a fifth attempt" : "";
  }

 private:
  int attempts_ = 0;  // of the run that was begun last
  bool hung_up_ = true;
  Moment last_dial_{0};
};

// What the schedule has to do at the minute of `at`: each week on a day, 1 Monday to 7 Sunday, or
// with `weekday` 0 on the date of `at` alone.
struct Appointment {
  enum class What { kSwitchOn, kSwitchOff, kSelfTest } what;
  int weekday;
  LocalTime at;

  bool Due(const LocalTime& now) const {
    const bool day = weekday == 0 ? DateOf(now) == DateOf(at) : Weekday(now) == weekday;
    return day && at.hour == now.hour && at.minute == now.minute;
  }
};

}  // namespace orvane::test
