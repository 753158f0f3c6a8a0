#include "platform/linux/user_directories.h"

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>

namespace orvane {
namespace {

std::string HomeDirectory() {
  if (const char* home = std::getenv("HOME"); home && *home == '/') return home;
  const passwd* user = getpwuid(getuid());
  return user && user->pw_dir ? user->pw_dir : "";
}

// A path that is not absolute counts as not given.
std::string Directory(const char* variable, const char* below_home) {
  const char* given = std::getenv(variable);
  std::string directory = given && *given == '/' ? given : HomeDirectory() + below_home;
  while (directory.size() > 1 && directory.back() == '/') directory.pop_back();
  return directory;
}

}  // namespace

std::string ConfigDirectory() {
  return Directory("XDG_CONFIG_HOME", "/.config");
}

std::string DataDirectory() {
  return Directory("XDG_DATA_HOME", "/.local/share");
}

bool MakeDirectories(const std::string& path) {
  for (std::size_t slash = path.find('/', 1); slash != std::string::npos;
       slash = path.find('/', slash + 1)) {
    mkdir(path.substr(0, slash).c_str(), 0700);
  }
  return mkdir(path.c_str(), 0700) == 0;
}

}  // namespace orvane
