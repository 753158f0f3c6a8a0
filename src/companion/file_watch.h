// Sees which files applications write, from outside: what they hold open, and what is new in the
// folders of those files when all is over.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "companion/application.h"

namespace orvane::companion {

class FileWatch {
 public:
  using Time = std::chrono::steady_clock::time_point;

  // Watches from now on.
  explicit FileWatch(const std::vector<Application>& applications);

  // Looks at the open files of the applications' processes, each one once, for `limit` at most but
  // at one file at least. The next look goes on where this one ended.
  void Look(std::chrono::milliseconds limit) { Look(limit, false); }

  // When application `index` was last seen to write; the start of the watch before that.
  Time LastWrite(std::size_t index) const { return writers_[index].last_write; }

  // The files that each application wrote and that are there now, the older ones first. Looks at
  // the folders for `limit` at most.
  std::vector<std::vector<std::string>> Written(std::chrono::milliseconds limit) const;

 private:
  // A file by whatever name: device and inode.
  using Id = std::pair<dev_t, ino_t>;
  struct Writer {
    std::map<Id, timespec> held;  // open for writing at some look: when it was changed
    Time last_write;
  };

  void Look(std::chrono::milliseconds limit, bool first);
  void LookAt(const std::filesystem::path& descriptor, bool first);
  void TakeFile(std::size_t index, const std::string& path, bool first);

  timespec started_;  // by the clock on the wall, as files are stamped
  std::vector<Writer> writers_;
  std::vector<std::pair<std::size_t, pid_t>> processes_;  // of which writer
  std::size_t current_ = 0;                               // the process that is looked at
  std::filesystem::directory_iterator descriptors_;       // those of it that are left
  std::map<std::string, std::set<std::size_t>> folders_;  // the writers that have to do with each
};

}  // namespace orvane::companion
