// A process that is killed at any moment. The kernel stops it before and after every call that it
// makes, and there it dies; between two calls nothing happens to a file.
#pragma once

#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <functional>

namespace orvane::test {

enum class Fate { kKilled, kFinished, kNotTraced };

// Runs `act` in a process that is killed at its stop number `stops`, if it comes that far.
inline Fate KilledAt(int stops, const std::function<void()>& act) {
  const pid_t child = fork();
  if (child == 0) {
    if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) _exit(2);
    raise(SIGSTOP);
    act();
    _exit(0);
  }
  int status = 0;
  waitpid(child, &status, 0);
  if (!WIFSTOPPED(status)) return Fate::kNotTraced;
  for (int i = 0; i < stops; ++i) {
    ptrace(PTRACE_SYSCALL, child, nullptr, nullptr);
    waitpid(child, &status, 0);
    if (WIFEXITED(status)) return Fate::kFinished;
  }
  kill(child, SIGKILL);
  waitpid(child, &status, 0);
  return Fate::kKilled;
}

}  // namespace orvane::test
