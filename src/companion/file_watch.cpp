#include "companion/file_watch.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <time.h>

#include <algorithm>
#include <fstream>
#include <optional>
#include <string_view>
#include <thread>

namespace orvane::companion {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kFirstLook{100};
constexpr std::size_t kMostFolders = 1000;
constexpr std::size_t kMostFiles = 1000;  // of one application

bool Before(const timespec& a, const timespec& b) {
  return std::pair(a.tv_sec, a.tv_nsec) < std::pair(b.tv_sec, b.tv_nsec);
}

timespec Now(clockid_t clock) {
  timespec now{};
  clock_gettime(clock, &now);
  return now;
}

// Nothing where no plain file stands.
std::optional<struct stat> StatusOf(const std::string& path) {
  struct stat status {};
  if (lstat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
  return status;
}

bool IsPlace(std::string_view path) {
  for (const std::string_view prefix : {"/proc/", "/sys/", "/dev/", "/usr/"}) {
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

fs::path ProcessPath(pid_t process) {
  return "/proc/" + std::to_string(process);
}

}  // namespace

FileWatch::FileWatch(const std::vector<Application>& applications) : started_(Now(CLOCK_REALTIME)) {
  for (const Application& application : applications) {
    const std::size_t writer = writers_.size();
    writers_.push_back({{}, Clock::now()});
    for (const pid_t process : application.processes) {
      processes_.emplace_back(writer, process);
      // Where an application was started is where many keep their documents.
      std::error_code error;
      const std::string folder = fs::read_symlink(ProcessPath(process) / "cwd", error);
      if (!error && folder != "/") folders_[folder].insert(writer);
    }
  }
  Look(kFirstLook, true);
  // Stamps may have steps of some milliseconds. What is written from now on has a later one.
  while (!Before(started_, Now(CLOCK_REALTIME_COARSE))) {
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
}

void FileWatch::Look(std::chrono::milliseconds limit, bool first) {
  const Clock::time_point end = Clock::now() + limit;
  const fs::directory_iterator none;
  std::error_code error;
  for (std::size_t begun = 0; begun <= processes_.size();) {
    if (descriptors_ != none) {
      LookAt(*descriptors_, first);
      descriptors_.increment(error);
      if (Clock::now() >= end) return;
    } else if (begun++ < processes_.size()) {
      current_ = (current_ + 1) % processes_.size();
      descriptors_ = fs::directory_iterator(ProcessPath(processes_[current_].second) / "fd", error);
    }
  }
}

void FileWatch::LookAt(const fs::path& descriptor, bool first) {
  std::error_code gone;
  const std::string path = fs::read_symlink(descriptor, gone);
  if (gone || !IsPlace(path)) return;
  const auto& [writer, process] = processes_[current_];
  const std::string folder = fs::path(path).parent_path();
  const bool known = folders_.contains(folder);
  if ((known || folders_.size() < kMostFolders) && StatusOf(path)) folders_[folder].insert(writer);
  if (OpenForWriting(ProcessPath(process), descriptor.filename())) TakeFile(writer, path, first);
}

void FileWatch::TakeFile(std::size_t index, const std::string& path, bool first) {
  const auto status = StatusOf(path);
  if (!status) return;
  Writer& writer = writers_[index];
  const auto [held, is_new] =
      writer.held.try_emplace({status->st_dev, status->st_ino}, status->st_mtim);
  if (!first && (is_new || Before(held->second, status->st_mtim))) writer.last_write = Clock::now();
  held->second = status->st_mtim;
}

// A folder tells that a file was written, not by whom: whoever has held it open for writing, by
// this name or another, else the only application that has to do with the folder.
std::vector<std::vector<std::string>> FileWatch::Written(std::chrono::milliseconds limit) const {
  using File = std::pair<timespec, std::string>;
  std::vector<std::vector<File>> files(writers_.size());
  const Clock::time_point end = Clock::now() + limit;
  for (const auto& [folder, neighbours] : folders_) {
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), last; !error && entry != last;
         entry.increment(error)) {
      if (Clock::now() >= end) break;
      const std::string path = entry->path();
      const auto status = StatusOf(path);
      if (!status || !Before(started_, status->st_mtim)) continue;
      bool held = false;
      for (std::size_t i = 0; i < writers_.size(); ++i) {
        if (!writers_[i].held.contains({status->st_dev, status->st_ino})) continue;
        held = true;
        files[i].emplace_back(status->st_mtim, path);
      }
      if (!held && neighbours.size() == 1) {
        files[*neighbours.begin()].emplace_back(status->st_mtim, path);
      }
    }
  }
  std::vector<std::vector<std::string>> written(files.size());
  for (std::size_t i = 0; i < files.size(); ++i) {
    std::stable_sort(files[i].begin(), files[i].end(),
                     [](const File& a, const File& b) { return Before(a.first, b.first); });
    if (files[i].size() > kMostFiles) files[i].resize(kMostFiles);
    for (File& file : files[i]) written[i].push_back(std::move(file.second));
  }
  return written;
}

}  // namespace orvane::companion
