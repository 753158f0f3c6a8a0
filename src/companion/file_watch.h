// Sees which files applications write, from outside: the files that they hold open, and what
// changes in the folders of those.
#pragma once

#include <chrono>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "companion/application.h"

namespace orvane::companion {

class FileWatch {
 public:
  using Time = std::chrono::steady_clock::time_point;

  // Watches from now on. `applications` must outlive the object.
  explicit FileWatch(const std::vector<Application>& applications);
  ~FileWatch();
  FileWatch(const FileWatch&) = delete;
  FileWatch& operator=(const FileWatch&) = delete;

  // Takes in what has happened since the last look. Cheap enough to be called twenty times a
  // second.
  void Look();

  // When application `index` was last seen to write; the start of the watch before that.
  Time LastWrite(std::size_t index) const { return writers_[index].last_write; }

  // The files that application `index` wrote and that are still there, in the order of writing.
  std::vector<std::string> Written(std::size_t index) const;

 private:
  // How a file looked at a moment.
  struct Stamp {
    long long size = 0;
    long long modified = 0;  // nanoseconds of the wall clock
    bool operator==(const Stamp&) const = default;
  };
  struct Writer {
    const Application* application;
    std::map<std::string, Stamp> held;  // open for writing at some look, as they were last
    std::vector<std::string> written;
    Time last_write;
  };
  struct Folder {
    std::string path;
    std::set<std::size_t> writers;  // those that hold a file there
  };

  // Nothing where no plain file stands.
  static std::optional<Stamp> StampOf(const std::string& path);
  void ScanHeldFiles(bool first);
  void AddFolder(const std::string& path, std::size_t index);
  void TakeEvents();
  void TakeEvent(int watch, unsigned mask, unsigned cookie, const std::string& name);
  void Attribute(const Folder& folder, const std::string& path);
  void AddWritten(std::size_t index, const std::string& path);
  std::set<std::size_t> Holders(const std::string& path);

  int inotify_;
  long long started_;  // nanoseconds of the wall clock
  std::vector<Writer> writers_;
  std::map<int, Folder> folders_;
  std::map<std::string, int> watches_;
  // Files on their way to another name: the cookie of the move, and who wrote them.
  std::map<unsigned, std::set<std::size_t>> moving_;
};

}  // namespace orvane::companion
