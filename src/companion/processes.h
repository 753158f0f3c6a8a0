// The processes of this machine, from /proc.
#pragma once

#include <sys/types.h>

#include <map>
#include <set>
#include <string>
#include <vector>

namespace orvane::companion {

// The family tree at one moment.
class ProcessTree {
 public:
  ProcessTree();

  // This process and what it lives in: its ancestors, the terminal that started the program among
  // them, and every process whose executable lies in `directory`.
  std::set<pid_t> Own(const std::string& directory) const;

  // `process` and its descendants, without those in `foreign` and what they started.
  std::vector<pid_t> Family(pid_t process, const std::set<pid_t>& foreign) const;

 private:
  std::map<pid_t, pid_t> parents_;
  std::multimap<pid_t, pid_t> children_;
};

// False when the process has ended, also when nobody has taken notice of it yet.
bool IsRunning(pid_t process);

// Directory of the running executable; empty when it cannot be told.
std::string DirectoryOfExecutable(pid_t process);

}  // namespace orvane::companion
