#include "companion/processes.h"

#include <unistd.h>

#include <charconv>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace orvane::companion {
namespace {

namespace fs = std::filesystem;

std::string ProcPath(pid_t process, const char* name) {
  return "/proc/" + std::to_string(process) + '/' + name;
}

struct Stat {
  char state = 0;
  pid_t parent = 0;
};

// The name stands in brackets and may hold anything, brackets and blanks too.
bool ReadStat(pid_t process, Stat& stat) {
  std::ifstream file(ProcPath(process, "stat"));
  std::string line;
  if (!std::getline(file, line)) return false;
  const std::size_t name_end = line.rfind(')');
  if (name_end == std::string::npos) return false;
  std::istringstream fields(line.substr(name_end + 1));
  return static_cast<bool>(fields >> stat.state >> stat.parent);
}

}  // namespace

ProcessTree::ProcessTree() {
  std::error_code error;
  for (fs::directory_iterator entry("/proc", error), end; !error && entry != end;
       entry.increment(error)) {
    const std::string name = entry->path().filename();
    pid_t process = 0;
    const auto [stop, bad] = std::from_chars(name.data(), name.data() + name.size(), process);
    Stat stat;
    if (bad != std::errc{} || stop != name.data() + name.size() || !ReadStat(process, stat)) {
      continue;
    }
    parents_[process] = stat.parent;
    children_.emplace(stat.parent, process);
  }
}

std::set<pid_t> ProcessTree::Own(const std::string& directory) const {
  std::set<pid_t> own;
  for (pid_t process = getpid(); process > 0 && own.insert(process).second;) {
    const auto parent = parents_.find(process);
    process = parent == parents_.end() ? 0 : parent->second;
  }
  for (const auto& [process, parent] : parents_) {
    if (!directory.empty() && DirectoryOfExecutable(process) == directory) own.insert(process);
  }
  return own;
}

std::vector<pid_t> ProcessTree::Family(pid_t process, const std::set<pid_t>& foreign) const {
  std::vector<pid_t> family = {process};
  for (std::size_t i = 0; i < family.size(); ++i) {
    const auto [first, last] = children_.equal_range(family[i]);
    for (auto child = first; child != last; ++child) {
      if (!foreign.contains(child->second)) family.push_back(child->second);
    }
  }
  return family;
}

bool IsRunning(pid_t process) {
  Stat stat;
  return ReadStat(process, stat) && stat.state != 'Z' && stat.state != 'X';
}

std::string DirectoryOfExecutable(pid_t process) {
  std::error_code error;
  return fs::read_symlink(ProcPath(process, "exe"), error).parent_path();
}

}  // namespace orvane::companion
