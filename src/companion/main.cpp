// The companion: has the user's applications save and close before the computer goes down, and
// leaves a report of it. Takes no arguments and ends by itself, whatever happens.
#include <poll.h>
#include <signal.h>
#include <sys/time.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <string>
#include <string_view>

#include "companion/report.h"
#include "companion/saver.h"
#include "platform/linux/linux_disk.h"
#include "platform/linux/linux_host.h"
#include "platform/linux/platform_settings.h"

namespace {

// How long applications are waited for, and the last moment of all, for a display or a disk that
// hangs. Both lie within the 40 s that the program waits for its companion.
constexpr std::chrono::seconds kPatience{31};
constexpr std::chrono::seconds kGuard{34};

extern "C" void GiveUp(int) {
  constexpr std::string_view kLine = "exit.exe: the desktop or the disk hangs; no report\n";
  pollfd room{STDERR_FILENO, POLLOUT, 0};
  if (poll(&room, 1, 0) == 1) (void)!write(STDERR_FILENO, kLine.data(), kLine.size());
  _exit(1);
}

void SetGuard() {
  struct sigaction action {};
  action.sa_handler = GiveUp;
  sigemptyset(&action.sa_mask);
  sigaction(SIGALRM, &action, nullptr);
  itimerval guard{};
  guard.it_value.tv_sec = kGuard.count();
  setitimer(ITIMER_REAL, &guard, nullptr);
}

}  // namespace

int main() {
  using namespace orvane;
  const auto deadline = std::chrono::steady_clock::now() + kPatience;
  SetGuard();
  // The program may be ended while this one still works.
  signal(SIGHUP, SIG_IGN);
  signal(SIGPIPE, SIG_IGN);

  LinuxDisk disk;
  const std::string program = ProgramDirectoryFor(ExecutableDirectory());
  const std::string path = LoadPlatformSettings(disk, program).report_directory + "/SaverApp.INI";

  const auto desktops = companion::OpenDesktops();
  if (desktops.empty()) ReportLine("exit.exe: no desktop here, and no applications to close");
  const auto applications = companion::SaveAndClose(desktops, deadline);
  const auto closed =
      std::count_if(applications.begin(), applications.end(),
                    [](const companion::Application& application) { return application.closed; });
  ReportLine("exit.exe: " + std::to_string(closed) + " of " + std::to_string(applications.size()) +
             " applications closed");
  if (disk.Replace(path, companion::ReportText(applications))) return 0;
  ReportLine("exit.exe: the report could not be written to " + path);
  return 1;
}
