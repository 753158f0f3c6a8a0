// The operating system as the program needs it.
#pragma once

#include <functional>

#include "platform/host.h"
#include "platform/linux/file.h"
#include "platform/linux/notifications.h"
#include "platform/linux/platform_settings.h"
#include "platform/linux/sleep_locks.h"
#include "platform/linux/unix_server.h"

namespace orvane {

// Directory of the running executable, without a slash at the end.
std::string ExecutableDirectory();

// Where a program whose executable lies in `executable_directory` keeps its files: there, when the
// user may write there and it is no directory of the system's; else `orvane` in the user's data
// directory, which is made if need be, with the first settings that the installation brings.
std::string ProgramDirectoryFor(const std::string& executable_directory);

// Whether a program runs on that directory at this moment.
bool RunsIn(const std::string& directory);

// Puts the settings that an installation brings, if it does, into a program directory. They are in
// English; where the session is not, their language is changed.
void CopyFirstSettings(const std::string& executable_directory, const std::string& directory);

// One line on standard error; line feeds inside become blanks. Dropped when nothing takes it.
void ReportLine(const std::string& line);

class LinuxHost : public Host {
 public:
  // `attach` has the event loop serve a bus; `beep` sounds the beep of the desktop.
  LinuxHost(std::string program_directory, const PlatformSettings& settings,
            BusConnection::Attach attach, std::function<void()> beep);

  std::string ProgramDirectory() const override { return program_directory_; }
  std::string ReportDirectory() const override { return report_directory_; }
  std::string CompanionPath() const override { return ExecutableDirectory() + "/exit.exe"; }
  // Has the peers of `server` be served while RunHidden waits.
  void ServeMeanwhile(UnixServer& server) { meanwhile_ = &server; }

  // The connections to the buses, for whoever else asks there.
  BusConnection& SystemBus() { return bus_; }
  BusConnection& SessionBus() { return session_bus_; }

  bool IsSecondInstance() override;
  RunOutcome RunHidden(const std::string& path, std::chrono::milliseconds limit) override;
  void TakeDown() override;
  bool StaysUp() const override { return stays_up_; }
  void OnSleep(std::function<void(bool asleep)> handler) override {
    sleep_locks_.Watch(std::move(handler));
  }
  void KeepAwake(bool on) override { sleep_locks_.KeepAwake(on); }
  void ShowNotification(Notice notice, const Notification& notification) override {
    if (notifies_) notifications_.Show(notice, notification);
  }
  void WithdrawNotification(Notice notice) override {
    if (notifies_) notifications_.Withdraw(notice);
  }
  void Beep() override { beep_(); }
  void Report(const std::string& line) override;

 private:
  const std::string program_directory_;
  const std::string report_directory_;
  const bool stays_up_;
  BusConnection bus_;
  Logind logind_;
  SleepLocks sleep_locks_;
  const bool notifies_;
  BusConnection session_bus_;
  Notifications notifications_{session_bus_};
  const std::function<void()> beep_;
  UnixServer* meanwhile_ = nullptr;
  File lock_;  // held while this process lives
};

}  // namespace orvane
