// What the program needs of the operating system beyond files, time and ports.
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <string>

namespace orvane {

// How the run of another program ended, for the line on standard error.
struct RunOutcome {
  enum class End {
    kNotStarted,  // missing, not executable, or the system refused
    kExited,      // ended by itself; `status` is its exit code
    kCrashed,     // ended by a signal; `status` is the signal's number
    kTimedOut,    // still running when the wait was over, and left running
  };
  End end = End::kNotStarted;
  int status = 0;
  std::string reason;  // why it was not started, in words; empty otherwise
};

// What a notification is about. There is at most one of each on the desktop.
enum class Notice { kMains, kBatteryLow, kUpsFault, kLinkLost, kWayDown, kTest };
inline constexpr std::size_t kNotices = 6;

struct Notification {
  std::string title;
  std::string body;
  bool urgent = false;
  bool stays = false;  // until it is withdrawn or the user closes it; else for a while

  bool operator==(const Notification&) const = default;
};

struct Host {
  virtual ~Host() = default;

  // Where the program keeps its files. No slash at the end.
  virtual std::string ProgramDirectory() const = 0;

  // The directory that holds `SaverApp.INI`. No slash at the end.
  virtual std::string ReportDirectory() const = 0;

  // Full path of the companion, beside the executable.
  virtual std::string CompanionPath() const = 0;

  // True when another process runs on the same program directory. The first call claims the
  // directory for this process, until it ends in whatever way; later calls of the holder are false.
  // A directory in which no claim can be laid holds nobody off.
  virtual bool IsSecondInstance() = 0;

  // Starts a program without arguments and without a window, and waits until it ends, for at most
  // `limit`. No event of this program is served meanwhile, but those who call on the socket for
  // upsd. Never ends the other program.
  virtual RunOutcome RunHidden(const std::string& path, std::chrono::milliseconds limit) = 0;

  // Asks the operating system for an orderly shutdown and returns at once. Where the computer stays
  // up, a line on standard error says why, sooner or later.
  virtual void TakeDown() = 0;

  // True where the settings leave the computer running whatever TakeDown is asked for: a trial.
  virtual bool StaysUp() const = 0;

  // Has `handler` run from the event loop from now on: with true before the computer falls asleep,
  // which waits for it for some seconds, and with false when it has woken. To be called once.
  virtual void OnSleep(std::function<void(bool asleep)> handler) = 0;

  // Keeps the computer from falling asleep while the last call said true. Returns at once; where
  // this user may not do so, a line on standard error says it once.
  virtual void KeepAwake(bool on) = 0;

  // Shows a notification of the desktop in the place of the one about the same, and takes it away
  // again. Both return at once; where there is no desktop, nothing happens.
  virtual void ShowNotification(Notice notice, const Notification& notification) = 0;
  virtual void WithdrawNotification(Notice notice) = 0;

  // One beep on the computer's speaker, where it has one.
  virtual void Beep() = 0;

  // One line on standard error, behind the program's name, for whoever looks for the reason of a
  // failure.
  virtual void Report(const std::string& line) = 0;
};

}  // namespace orvane
