// The companion: has the user's applications save and close before the computer goes down, and
// leaves a report of it. Ends by itself, whatever happens. With `--version` it does nothing but
// tell that.
#include <poll.h>
#include <signal.h>
#include <sys/time.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "app/patience.h"
#include "app/settings.h"
#include "companion/report.h"
#include "companion/saver.h"
#include "platform/linux/companion_mark.h"
#include "platform/linux/linux_disk.h"
#include "platform/linux/linux_host.h"
#include "platform/linux/platform_settings.h"

namespace {

// Stands in the executable for whoever looks before he asks: a companion that does not know the
// option would close the applications.
constexpr std::string_view kVersionOption = orvane::kCompanionVersionMark;

// From the end of the patience to the last moment of all, for a display or a disk that hangs. Even
// with the longest patience it lies within the 40 s that the program waits for its companion.
constexpr std::chrono::seconds kGrace{3};

extern "C" void GiveUp(int) {
  constexpr std::string_view kLine =
      "exit.exe: the desktop or the disk hangs; the report may be incomplete\n";
  pollfd room{STDERR_FILENO, POLLOUT, 0};
  if (poll(&room, 1, 0) == 1) (void)!write(STDERR_FILENO, kLine.data(), kLine.size());
  _exit(1);
}

void SetGuard(std::chrono::steady_clock::time_point end) {
  struct sigaction action {};
  action.sa_handler = GiveUp;
  sigemptyset(&action.sa_mask);
  sigaction(SIGALRM, &action, nullptr);
  itimerval guard{};
  const auto left = std::chrono::ceil<std::chrono::seconds>(end - std::chrono::steady_clock::now());
  guard.it_value.tv_sec = std::max<time_t>(left.count(), 1);
  setitimer(ITIMER_REAL, &guard, nullptr);
}

}  // namespace

int main(int argc, char** argv) {
  using namespace orvane;
  // Whoever wants to know whether it runs.
  if (argc == 2 && kVersionOption.ends_with(argv[1])) {
    return std::puts("exit.exe " ORVANE_VERSION) < 0 ? 1 : 0;
  }
  const auto begun = std::chrono::steady_clock::now();
  // Until the settings are read, the delay may be the shortest.
  SetGuard(begun + PatienceFor(0) + kGrace);
  // The program may be ended while this one still works.
  signal(SIGHUP, SIG_IGN);
  signal(SIGPIPE, SIG_IGN);

  LinuxDisk disk;
  const std::string program = ProgramDirectoryFor(ExecutableDirectory());
  State state;
  LoadSettings(disk, program + "/Orvane.ini", state);
  const std::chrono::seconds patience = PatienceFor(state.Settings[kShutdownDelay]);
  SetGuard(begun + patience + kGrace);
  const std::string path = LoadPlatformSettings(disk, program).report_directory + "/SaverApp.INI";

  const auto write = [&](const std::vector<companion::Application>& applications) {
    return disk.Replace(path, companion::ReportText(applications));
  };
  // Whatever hangs later, a report of what is known by then stands.
  static_cast<void>(write({}));
  const auto desktops = companion::OpenDesktops();
  if (desktops.empty()) ReportLine("exit.exe: no desktop here, and no applications to close");
  const auto applications = companion::SaveAndClose(
      desktops, begun + patience, [&](const auto& known) { static_cast<void>(write(known)); });
  const auto closed =
      std::count_if(applications.begin(), applications.end(),
                    [](const companion::Application& application) { return application.closed; });
  ReportLine("exit.exe: " + std::to_string(closed) + " of " + std::to_string(applications.size()) +
             " applications closed");
  if (write(applications)) return 0;
  ReportLine("exit.exe: the report could not be written to " + path);
  return 1;
}
