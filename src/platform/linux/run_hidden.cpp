#include "platform/linux/run_hidden.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <optional>
#include <thread>

#include "platform/linux/file.h"
#include "platform/linux/unix_server.h"

namespace orvane {
namespace {

using Clock = std::chrono::steady_clock;

// How often a system that cannot announce the end of a process is asked for it.
constexpr std::chrono::milliseconds kLook{10};

// How a program is started: with the signals as a fresh process has them, and no descriptor of ours
// but standard error.
class Start {
 public:
  Start() {
    posix_spawnattr_init(&attributes_);
    posix_spawn_file_actions_init(&actions_);
    sigset_t none, all;
    sigemptyset(&none);
    sigfillset(&all);
    posix_spawnattr_setsigmask(&attributes_, &none);
    posix_spawnattr_setsigdefault(&attributes_, &all);
    posix_spawnattr_setflags(&attributes_,
                             POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSID);
    posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions_, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addclosefrom_np(&actions_, STDERR_FILENO + 1);
  }
  ~Start() {
    posix_spawn_file_actions_destroy(&actions_);
    posix_spawnattr_destroy(&attributes_);
  }
  Start(const Start&) = delete;
  Start& operator=(const Start&) = delete;

  // 0, or the reason as an error number.
  int Run(const std::string& path, pid_t& child) const {
    std::string name = path;
    char* arguments[] = {name.data(), nullptr};
    return posix_spawn(&child, path.c_str(), &actions_, &attributes_, arguments, environ);
  }

 private:
  posix_spawnattr_t attributes_;
  posix_spawn_file_actions_t actions_;
};

std::chrono::milliseconds Left(Clock::time_point end) {
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now());
  return std::max(left, std::chrono::milliseconds::zero());
}

// The exit status of the child once it has ended; nothing while it runs. Whoever was started to
// ignore the ends of children never learns how they ended, and takes it for well.
std::optional<int> Ended(pid_t child) {
  int status = 0;
  const pid_t ended = waitpid(child, &status, WNOHANG);
  if (ended == child) return status;
  if (ended < 0 && errno == ECHILD) return 0;
  return std::nullopt;
}

std::optional<int> WaitFor(pid_t child, Clock::time_point end, UnixServer* meanwhile) {
  const File handle(static_cast<int>(syscall(SYS_pidfd_open, child, 0)));
  for (;;) {
    if (const auto status = Ended(child)) return status;
    const auto left = Left(end);
    if (left.count() == 0) return std::nullopt;
    if (handle && meanwhile) {
      meanwhile->ServeUntil(handle.Get(), left);
    } else if (handle) {
      pollfd wait{handle.Get(), POLLIN, 0};
      poll(&wait, 1, static_cast<int>(left.count()));
    } else {
      std::this_thread::sleep_for(std::min(left, kLook));
    }
  }
}

}  // namespace

RunOutcome RunHidden(const std::string& path, std::chrono::milliseconds limit,
                     UnixServer* meanwhile) {
  const Clock::time_point end = Clock::now() + limit;
  pid_t child = 0;
  if (const int error = Start().Run(path, child)) {
    return {RunOutcome::End::kNotStarted, error, std::strerror(error)};
  }
  const auto status = WaitFor(child, end, meanwhile);
  if (!status) return {RunOutcome::End::kTimedOut, 0, ""};
  if (WIFSIGNALED(*status)) return {RunOutcome::End::kCrashed, WTERMSIG(*status), ""};
  return {RunOutcome::End::kExited, WEXITSTATUS(*status), ""};
}

}  // namespace orvane
