// The end of the computer by way of logind, which lets an ordinary user take it down where the
// administrator allows it. The methods are those of org.freedesktop.login1(5).
#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>

#include "platform/linux/bus_connection.h"

namespace orvane {

inline constexpr BusObject kLogindManager = {"org.freedesktop.login1", "/org/freedesktop/login1",
                                             "org.freedesktop.login1.Manager"};

// How the computer goes down.
enum class ShutdownAction {
  kHalt,      // stopped with its power on: starts again by itself when the UPS gives power again
  kPowerOff,  // power off
  kNone,      // not at all: everything but the last call
};

// "Halt", "PowerOff" or "None" in any case of letters; an empty text is "Halt". False, with
// `action` at kHalt, for any other text.
bool ReadShutdownAction(std::string_view text, ShutdownAction& action);

// Who holds up a shutdown for good, by the answer of ListInhibitors; empty when nobody does.
std::string BlockersIn(const BusCall& call);

class Logind {
 public:
  // `report` takes one line for whoever looks for the reason of a failure.
  Logind(ShutdownAction action, BusConnection& bus, std::function<void(const std::string&)> report)
      : action_(action), bus_(bus), report_(std::move(report)) {}

  // Asks for the end that `action` names, then for the other one, each at first over the heads of
  // programs that block a shutdown; the first request that logind takes ends it. Returns at once.
  // The answers are waited for by the event loop, for as long as the program runs: logind refuses a
  // request whose caller has gone. Where the computer stays up, a line reports why, and which
  // programs block a shutdown. For kNone, asks only what is allowed, and reports that.
  void TakeDown();

 private:
  void TryNext();
  void AskWhatIsAllowed();
  void ReportWithBlockers(const std::string& line);

  ShutdownAction action_;
  BusConnection& bus_;
  std::function<void(const std::string&)> report_;
  Bus* open_ = nullptr;         // the connection that the requests go over
  std::size_t next_ = 0;        // the next request
  std::string refusals_;        // what came of those before it
  std::string allowed_;         // the first end that is allowed; kNone alone
  std::size_t unanswered_ = 0;  // questions under way; kNone alone
};

}  // namespace orvane
