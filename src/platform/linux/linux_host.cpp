#include "platform/linux/linux_host.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <utility>

#include "app/options.h"
#include "app/settings.h"
#include "platform/linux/linux_clock.h"
#include "platform/linux/linux_disk.h"
#include "platform/linux/run_hidden.h"
#include "platform/linux/service_manager.h"
#include "platform/linux/user_directories.h"
#include "platform/linux/way_down.h"

namespace orvane {
namespace {

// Root may write here too, but files of a user have no place here.
constexpr std::string_view kSystemTree = "/usr/";

constexpr int kReportPatience = 200;  // milliseconds

bool MayWriteIn(const std::string& directory) {
  return faccessat(AT_FDCWD, directory.c_str(), W_OK | X_OK, AT_EACCESS) == 0;
}

void ReportOwnLine(const std::string& line) {
  ReportLine("orvane: " + line);
}

// Claims the directory: the lock, held as long as it lives; empty where none can be laid. `taken`
// tells whether another process holds it.
File ClaimDirectory(const std::string& directory, bool& taken) {
  taken = false;
  const std::string path = directory + "/orvane.lock";
  File file(open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0666));
  // Another user's lock file can be held without being written.
  if (!file) file = File(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW));
  if (file && flock(file.Get(), LOCK_EX | LOCK_NB) != 0) {
    taken = errno == EWOULDBLOCK;
    return {};
  }
  return file;
}

}  // namespace

std::string ExecutableDirectory() {
  char path[4096];
  const ssize_t size = readlink("/proc/self/exe", path, sizeof path);
  if (size <= 0) return ".";
  const std::string_view text(path, static_cast<std::size_t>(size));
  return std::string(text.substr(0, std::max<std::size_t>(text.rfind('/'), 1)));
}

void CopyFirstSettings(const std::string& executable_directory, const std::string& directory) {
  LinuxDisk disk;
  const auto text = disk.Read(executable_directory + "/../../share/orvane/Orvane.ini");
  if (!text) return;
  State settings;
  ParseSettings(*text, settings);
  if (IsChinese(SessionLocale())) settings.Settings[kLanguage] = 1;
  static_cast<void>(SaveSettings(disk, SettingsPath(directory), settings));
}

std::string ProgramDirectoryFor(const std::string& executable_directory) {
  const bool system = (executable_directory + '/').starts_with(kSystemTree);
  if (!system && MayWriteIn(executable_directory)) return executable_directory;
  std::string directory = DataDirectory() + "/orvane";
  if (MakeDirectories(directory)) CopyFirstSettings(executable_directory, directory);
  return directory;
}

void ReportLine(const std::string& line) {
  // A warning, where the journal takes it (sd-daemon(3)).
  std::string text = (JournalTakesErrors() ? "<4>" : "") + line;
  std::replace(text.begin(), text.end(), '\n', ' ');
  text += '\n';
  // A terminal that stands still, or a pipe that nobody reads, holds nothing up.
  pollfd room{STDERR_FILENO, POLLOUT, 0};
  if (poll(&room, 1, kReportPatience) != 1) return;
  [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, text.data(), text.size());
}

LinuxHost::LinuxHost(std::string program_directory, const PlatformSettings& settings,
                     BusConnection::Attach attach, std::function<void()> beep)
    : program_directory_(std::move(program_directory)),
      report_directory_(settings.report_directory),
      stays_up_(settings.action == ShutdownAction::kNone),
      bus_(Bus::Which::kSystem, attach),
      logind_(settings.action, bus_, ReportOwnLine),
      sleep_locks_(bus_, ReportOwnLine),
      notifies_(settings.notifications),
      session_bus_(Bus::Which::kUser, std::move(attach)),
      beep_(std::move(beep)) {}

bool RunsIn(const std::string& directory) {
  bool taken = false;
  static_cast<void>(ClaimDirectory(directory, taken));
  return taken;
}

bool LinuxHost::IsSecondInstance() {
  bool taken = false;
  if (!lock_) lock_ = ClaimDirectory(program_directory_, taken);
  return taken;
}

void LinuxHost::TakeDown() {
  logind_.TakeDown();
  if (stays_up_) return;
  LinuxDisk disk;
  NoteLastStep(disk, program_directory_, LinuxClock().SystemSeconds());
}

void LinuxHost::Report(const std::string& line) {
  ReportOwnLine(line);
}

RunOutcome LinuxHost::RunHidden(const std::string& path, std::chrono::milliseconds limit) {
  return orvane::RunHidden(path, limit, meanwhile_);
}

}  // namespace orvane
