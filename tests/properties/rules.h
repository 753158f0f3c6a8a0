// The rules by which a run of the program is judged: what the protection promises, said from
// outside, of the facts that the program met. Nothing here looks at how the program keeps them.
#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "platform/clock.h"

namespace orvane::test {

using Moment = std::chrono::milliseconds;

// What one status reply says.
struct Bits {
  bool mains = false;  // failed
  bool battery = false;
  bool ups = false;
};

// The user's settings as far as a rule names them.
struct Wishes {
  int delay = 600;  // seconds from a mains failure to the shutdown
  int low = 120;    // seconds from a low battery to the shutdown
  int shutdown_minutes = 0;
  int dial_conditions = 0;  // decimal digits: mains, battery, UPS
  int modem_port = 2;
  int language = 0;
  std::string number;

  std::string ShutdownCommand() const;
  bool Dials(int fault) const;
};

// What the panel says of the faults: as the last status reply had it, in the language of that time.
// A caption counts as normal only where it is the present language's word for it.
class Shown {
 public:
  void Reply(const Bits& bits, int language);
  void LinkLost() { known_ = false; }
  const Bits& Last() const { return bits_; }
  // Fault 1 mains, 2 battery, 3 UPS.
  bool Normal(int fault, int language) const;

 private:
  Bits bits_;
  int language_ = 0;
  bool known_ = false;
};

// When a timer has to tick: a whole period after it was started, and every period from there on. A
// tick that time jumped over comes once, late.
class Ticks {
 public:
  explicit Ticks(Moment period) : period_(period) {}
  void Start(Moment now);
  void Stop() { next_.reset(); }
  void Jump(Moment to);
  bool Running() const { return next_.has_value(); }
  // A tick comes now: false when none has to.
  bool Take(Moment now);
  bool Missed(Moment now) const { return next_ && *next_ < now; }

 private:
  Moment period_;
  std::optional<Moment> next_;
};

// The count to shutdown. A second of it passes with each tick while mains is not normal; the ticks
// go on from a fault to the next reply without one, and stand still while the link is down.
class CountRule {
 public:
  Ticks ticks{std::chrono::seconds(1)};

  void Reply(Moment now, const Bits& bits);
  void Saved(const Wishes& wishes) { left_ = wishes.delay; }
  // One second: true when the shutdown has to begin with it.
  bool Tick(const Shown& shown, const Wishes& wishes);

 private:
  bool begun_ = false;  // a count stands, running or suspended
  int left_ = 0;
};

// An episode of a fault is told once: when a reply shows it and one before showed it clear.
class Episode {
 public:
  // True when this reply begins an episode.
  bool Begins(bool set);

 private:
  bool seen_clear_ = false;
};

// The modem's line: one call at a time.
class CallRule {
 public:
  // A text goes out; `begins`: a run begins with it. What is wrong with that, empty if nothing.
  std::string Sent(const std::string& text, bool begins, Moment now);
  // Whatever went on is cut short: the form was unloaded.
  void Cut() { attempts_ = 0; }

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

  bool Due(const LocalTime& now) const;
};

// A line of the log and a record of the day, stamped.
std::string LogLine(const LocalTime& now, std::string_view message);
std::string Record(const LocalTime& now, int code);

}  // namespace orvane::test
