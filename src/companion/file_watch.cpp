#include "companion/file_watch.h"

#include <fcntl.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string_view>

namespace orvane::companion {
namespace {

namespace fs = std::filesystem;

constexpr std::uint32_t kEvents =
    IN_MODIFY | IN_CLOSE_WRITE | IN_CREATE | IN_MOVED_FROM | IN_MOVED_TO | IN_ONLYDIR;
constexpr std::size_t kMostFolders = 1000;
constexpr std::size_t kMostFiles = 1000;

constexpr long long kNanoseconds = 1'000'000'000;

long long Nanoseconds(const timespec& time) {
  return time.tv_sec * kNanoseconds + time.tv_nsec;
}

// The clock that the system stamps files with.
long long FileClock() {
  timespec now{};
  clock_gettime(CLOCK_REALTIME_COARSE, &now);
  return Nanoseconds(now);
}

bool IsPlace(std::string_view path) {
  for (const std::string_view prefix : {"/proc/", "/sys/", "/dev/"}) {
    if (path.starts_with(prefix)) return false;
  }
  return path.starts_with('/');
}

// Whether the descriptor was opened for writing; /proc tells its flags in octal.
bool OpenForWriting(const fs::path& process, const std::string& descriptor) {
  std::ifstream info(process / "fdinfo" / descriptor);
  std::string name;
  unsigned flags = 0;
  while (info >> name) {
    if (name == "flags:") return info >> std::oct >> flags && (flags & O_ACCMODE) != O_RDONLY;
    info.ignore(4096, '\n');
  }
  return false;
}

// Every file that the application's processes hold open, with whether they may write it.
void ForEachHeldFile(const Application& application,
                     const std::function<void(const std::string& path, bool writable)>& take) {
  for (const pid_t id : application.processes) {
    const fs::path process = "/proc/" + std::to_string(id);
    std::error_code error;
    for (fs::directory_iterator entry(process / "fd", error), end; !error && entry != end;
         entry.increment(error)) {
      std::error_code gone;
      const std::string path = fs::read_symlink(entry->path(), gone);
      if (gone || !IsPlace(path)) continue;
      take(path, OpenForWriting(process, entry->path().filename()));
    }
  }
}

}  // namespace

FileWatch::FileWatch(const std::vector<Application>& applications)
    : inotify_(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)), started_(FileClock()) {
  const Time now = std::chrono::steady_clock::now();
  for (const Application& application : applications) {
    writers_.push_back({&application, {}, {}, now});
  }
  ScanHeldFiles(true);
}

FileWatch::~FileWatch() {
  if (inotify_ >= 0) close(inotify_);
}

void FileWatch::Look() {
  TakeEvents();
  ScanHeldFiles(false);
}

std::optional<FileWatch::Stamp> FileWatch::StampOf(const std::string& path) {
  struct stat status {};
  if (lstat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
  return Stamp{status.st_size, Nanoseconds(status.st_mtim)};
}

// A file that is open for writing counts as written once it differs from what it was at the first
// look, or, if it was opened later, once it was changed after the start.
void FileWatch::ScanHeldFiles(bool first) {
  for (std::size_t i = 0; i < writers_.size(); ++i) {
    Writer& writer = writers_[i];
    ForEachHeldFile(*writer.application, [&](const std::string& path, bool writable) {
      const std::optional<Stamp> now = StampOf(path);
      if (!now) return;
      AddFolder(fs::path(path).parent_path(), i);
      if (!writable) return;
      const auto [held, is_new] = writer.held.try_emplace(path, *now);
      const bool changed = is_new ? now->modified >= started_ : held->second != *now;
      if (!first && changed) {
        held->second = *now;
        AddWritten(i, path);
      }
    });
    if (!first) continue;
    // Where an application was started is where many keep their documents.
    for (const pid_t id : writer.application->processes) {
      std::error_code error;
      const std::string folder = fs::read_symlink("/proc/" + std::to_string(id) + "/cwd", error);
      if (!error && folder != "/") AddFolder(folder, i);
    }
  }
}

void FileWatch::AddFolder(const std::string& path, std::size_t index) {
  if (inotify_ < 0) return;
  auto watch = watches_.find(path);
  if (watch == watches_.end()) {
    if (watches_.size() >= kMostFolders) return;
    const int number = inotify_add_watch(inotify_, path.c_str(), kEvents);
    watch = watches_.emplace(path, number).first;
  }
  if (watch->second < 0) return;
  Folder& folder = folders_[watch->second];
  folder.path = path;
  folder.writers.insert(index);
}

void FileWatch::TakeEvents() {
  alignas(inotify_event) std::array<char, 16384> buffer;
  for (;;) {
    const ssize_t size = inotify_ < 0 ? 0 : read(inotify_, buffer.data(), buffer.size());
    if (size <= 0) return;
    for (const char* at = buffer.data(); at < buffer.data() + size;) {
      const auto* event = reinterpret_cast<const inotify_event*>(at);
      if (event->len > 0 && !(event->mask & IN_ISDIR)) {
        TakeEvent(event->wd, event->mask, event->cookie, event->name);
      }
      at += sizeof(inotify_event) + event->len;
    }
  }
}

void FileWatch::TakeEvent(int watch, unsigned mask, unsigned cookie, const std::string& name) {
  const auto found = folders_.find(watch);
  if (found == folders_.end()) return;
  const Folder& folder = found->second;
  const std::string path = folder.path + '/' + name;
  if (mask & IN_CREATE) {
    // Nothing is in it yet, but now is the time to see who made it.
    for (const std::size_t index : Holders(path)) writers_[index].held.try_emplace(path);
  } else if (mask & IN_MOVED_FROM) {
    // Written aside and then put in its place: what counts is the name it ends up with.
    std::set<std::size_t> authors;
    for (std::size_t i = 0; i < writers_.size(); ++i) {
      if (std::erase(writers_[i].written, path) > 0) authors.insert(i);
    }
    if (!authors.empty()) moving_[cookie] = authors;
  } else if ((mask & IN_MOVED_TO) && moving_.contains(cookie)) {
    for (const std::size_t index : moving_[cookie]) AddWritten(index, path);
    moving_.erase(cookie);
  } else {
    Attribute(folder, path);
  }
}

// The folder tells that a file was written, not by whom: whoever holds it or has written it before,
// else the only application that has to do with the folder.
void FileWatch::Attribute(const Folder& folder, const std::string& path) {
  std::set<std::size_t> authors;
  for (std::size_t i = 0; i < writers_.size(); ++i) {
    const Writer& writer = writers_[i];
    if (writer.held.contains(path) ||
        std::find(writer.written.begin(), writer.written.end(), path) != writer.written.end()) {
      authors.insert(i);
    }
  }
  if (authors.empty()) authors = Holders(path);
  if (authors.empty() && folder.writers.size() == 1) authors = folder.writers;
  for (const std::size_t index : authors) AddWritten(index, path);
}

void FileWatch::AddWritten(std::size_t index, const std::string& path) {
  Writer& writer = writers_[index];
  writer.last_write = std::chrono::steady_clock::now();
  auto& written = writer.written;
  if (written.size() < kMostFiles &&
      std::find(written.begin(), written.end(), path) == written.end()) {
    written.push_back(path);
  }
}

std::set<std::size_t> FileWatch::Holders(const std::string& path) {
  std::set<std::size_t> holders;
  for (std::size_t i = 0; i < writers_.size(); ++i) {
    ForEachHeldFile(*writers_[i].application, [&](const std::string& held, bool writable) {
      if (writable && held == path) holders.insert(i);
    });
  }
  return holders;
}

std::vector<std::string> FileWatch::Written(std::size_t index) const {
  std::vector<std::string> files;
  for (const std::string& path : writers_[index].written) {
    if (StampOf(path)) files.push_back(path);
  }
  return files;
}

}  // namespace orvane::companion
