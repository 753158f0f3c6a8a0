// The end of the computer by way of logind, which lets an ordinary user take it down where the
// administrator allows it.
#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <string_view>

namespace orvane {

// How the computer goes down.
enum class ShutdownAction {
  kHalt,      // stopped with its power on: starts again by itself when the UPS gives power again
  kPowerOff,  // power off
  kNone,      // not at all: everything but the last call
};

// "Halt", "PowerOff" or "None" in any case of letters; an empty text is "Halt". False, with
// `action` at kHalt, for any other text.
bool ReadShutdownAction(std::string_view text, ShutdownAction& action);

class Logind {
 public:
  // `report` takes one line for whoever looks for the reason of a failure.
  Logind(ShutdownAction action, std::function<void(const std::string&)> report)
      : action_(action), report_(std::move(report)) {}

  // Asks what this user may do without a password. The two operations together take at most five
  // seconds, whatever the bus does.
  void EnableShutdownPrivilege();

  // Asks for the end that `action` names where that is allowed, else for the other one; where
  // logind did not answer in time what is allowed, asks all the same. Returns as soon as logind has
  // taken it. False when the computer stays up, by refusal or because `action` says so; the reason
  // has been reported.
  bool ExitWindowsEx();

 private:
  // One of the two ends, and what logind said to it.
  struct End {
    const char* method = nullptr;
    const char* question = nullptr;
    std::string answer;  // "yes", or why not
  };

  std::string Refusals() const;

  ShutdownAction action_;
  std::function<void(const std::string&)> report_;
  End ends_[2];                        // in the order in which they are tried
  std::chrono::milliseconds left_{0};  // of the time that the bus may take
};

}  // namespace orvane
