// What outside the program decides whether its protection will work: rights, other programs, files.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace orvane {

// Whether the operating system lets this user take the computer down in one of its ways.
enum class Right {
  kYes,
  kPassword,    // only with a password
  kImpossible,  // this computer cannot do it
  kBlocked,     // another program blocks it, and this user may not override that
  kBlockedAndPassword,
  kNo,
  kNoAnswer,  // nobody answered within two seconds
};

struct RightsFound {
  Right wanted = Right::kNoAnswer;  // to go down as platform.ini wants it
  Right other = Right::kNoAnswer;   // the way that is used where the wanted one is refused
};

struct CompanionFound {
  bool runs = false;
  std::string version;  // that it told; empty where it told none
  std::string reason;   // why it does not run, in words
};

struct OthersFound {
  std::vector<std::string> on_port;  // programs that poll UPSes on such ports themselves
  std::vector<std::string> acting;   // programs that would take the computer down by a UPS
};

enum class Autostart { kOn, kOff, kBroken };

// The answers so far. Nothing stands for a question that has not been answered yet.
struct OutsideFindings {
  bool in_session = true;  // of a user; a service has none
  std::optional<RightsFound> rights;
  std::optional<std::string> blockers;  // who blocks a shutdown; empty: nobody
  bool blockers_unknown = false;        // nobody answered within two seconds
  std::optional<CompanionFound> companion;
  std::optional<OthersFound> others;
  std::vector<std::string> unwritable;  // files, or the directory, that cannot be written
  std::uint64_t free_bytes = 0;         // in the program's directory
  Autostart autostart = Autostart::kOff;
  std::string autostart_program;                 // that the entry names
  std::optional<std::chrono::seconds> way_down;  // that the computer took the last time
};

// What platform.ini says of the last step.
struct LastStep {
  std::string wanted = "Halt";
  std::string other = "PowerOff";
  bool none = false;           // Action=None: the computer is left running
  std::string unknown_action;  // what stands there, where it is no action's name
};

struct Inspector {
  virtual ~Inspector() = default;

  // Asks all questions anew and returns at once; answers that were there stand until the new ones
  // have come. `on_answer` runs from the event loop after each of them. Every question has its
  // answer within two seconds, and be it that there was none.
  virtual void Ask(std::function<void()> on_answer) = 0;

  virtual const OutsideFindings& Found() const = 0;
  virtual LastStep Last() const = 0;

  // The device behind a port number; empty when there is none.
  virtual std::string DeviceOf(int port) const = 0;

  // Has the program start with the desktop, or not any more. False when that entry could not be
  // written or removed.
  virtual bool StartWithDesktop(bool on) = 0;
};

}  // namespace orvane
