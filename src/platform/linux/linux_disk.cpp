#include "platform/linux/linux_disk.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <utility>

#include "platform/linux/file.h"
#include "platform/text.h"

namespace orvane {
namespace {

constexpr off_t kMostRead = off_t{1024} * 1024 * 1024;

constexpr int kMostLinks = 40;

// With its slash; empty for a bare name.
std::string DirectoryOf(const std::string& path) {
  return path.substr(0, path.rfind('/') + 1);
}

// The path as the file is really spelled; `path` itself when there is no such file. Of several
// spellings the exact one counts, else the first in byte order.
std::string Find(const std::string& path) {
  struct stat found {};
  if (lstat(path.c_str(), &found) == 0) return path;
  const std::string directory = DirectoryOf(path);
  const std::string_view name = std::string_view(path).substr(directory.size());
  DIR* entries = opendir(directory.empty() ? "." : directory.c_str());
  if (!entries) return path;
  std::string best;
  while (const dirent* entry = readdir(entries)) {
    const std::string_view candidate = entry->d_name;
    if (SameName(candidate, name) && (best.empty() || candidate < best)) best = candidate;
  }
  closedir(entries);
  return best.empty() ? path : directory + best;
}

// Where a chain of symbolic links ends, whether or not a file stands there.
std::string FollowLinks(std::string path) {
  for (int i = 0; i < kMostLinks; ++i) {
    char target[4096];
    const ssize_t size = readlink(path.c_str(), target, sizeof target);
    if (size <= 0 || size == sizeof target) return path;
    const std::string_view text(target, static_cast<std::size_t>(size));
    path = (text.front() == '/' ? "" : DirectoryOf(path)) + std::string(text);
  }
  return path;
}

// An open regular file, or none and the reason in errno. Never waits, as the opening of a pipe
// would.
File OpenRegular(const std::string& path, int flags, struct stat& status) {
  File file(open(path.c_str(), flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, 0666));
  if (!file) return {};
  if (fstat(file.Get(), &status) == 0 && S_ISREG(status.st_mode)) return file;
  file = {};
  errno = EINVAL;
  return {};
}

void SyncDirectory(const std::string& directory) {
  const File file(open(directory.empty() ? "." : directory.c_str(), O_RDONLY | O_CLOEXEC));
  if (file) fsync(file.Get());
}

// Writes `content` to a new file, of owner and mode of the `old` one if there is one, and has it on
// the medium.
bool WriteAside(const std::string& aside, std::string_view content, const struct stat* old) {
  unlink(aside.c_str());
  File file(open(aside.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
  if (!file) return false;
  if (old) {
    // The owner can be kept only by who may give files away; the mode is what counts.
    [[maybe_unused]] const int owner = fchown(file.Get(), old->st_uid, old->st_gid);
    if (fchmod(file.Get(), old->st_mode & 07777) != 0) return false;
  }
  return file.WriteAll(content) && fsync(file.Get()) == 0 && file.Close();
}

// Adds the record to an open file of `size` bytes, or leaves it as it was.
bool AppendTo(const File& file, off_t size, std::string_view record, bool settle) {
  const ssize_t put = write(file.Get(), record.data(), record.size());
  const bool whole = put == static_cast<ssize_t>(record.size());
  if (whole && (!settle || fdatasync(file.Get()) == 0)) return true;
  // Nothing more can be done about a file that will not be cut back either.
  if (put > 0) {
    [[maybe_unused]] const int cut = ftruncate(file.Get(), size);
  }
  return false;
}

bool AppendRecord(const std::string& target, std::string_view record, bool settle) {
  struct stat status {};
  if (const File file = OpenRegular(target, O_WRONLY | O_APPEND, status)) {
    return AppendTo(file, status.st_size, record, settle);
  }
  if (errno != ENOENT) return false;
  const std::string created = FollowLinks(target);
  const File file = OpenRegular(created, O_WRONLY | O_APPEND | O_CREAT | O_EXCL, status);
  if (!file) return false;
  if (!AppendTo(file, 0, record, settle)) {
    unlink(created.c_str());
    return false;
  }
  if (settle) SyncDirectory(DirectoryOf(created));
  return true;
}

}  // namespace

std::optional<std::string> LinuxDisk::Read(const std::string& path) const {
  struct stat status {};
  const File file = OpenRegular(Find(path), O_RDONLY, status);
  if (!file || status.st_size > kMostRead) return std::nullopt;
  std::string content;
  if (!file.ReadAll(content)) return std::nullopt;
  return content;
}

bool LinuxDisk::Exists(const std::string& path) const {
  struct stat status {};
  return stat(Find(path).c_str(), &status) == 0;
}

bool LinuxDisk::Replace(const std::string& path, std::string_view content) {
  const std::string target = FollowLinks(Find(path));
  const std::string directory = DirectoryOf(target);
  struct stat old {};
  const bool exists = stat(target.c_str(), &old) == 0;
  if (exists && (!S_ISREG(old.st_mode) || access(target.c_str(), W_OK) != 0)) return false;
  // One name for all times, so that a power cut leaves at most one such file behind.
  const std::string aside = directory + '.' + target.substr(directory.size()) + ".new";
  if (!WriteAside(aside, content, exists ? &old : nullptr) ||
      rename(aside.c_str(), target.c_str()) != 0) {
    unlink(aside.c_str());
    return false;
  }
  SyncDirectory(directory);
  return true;
}

bool LinuxDisk::Append(const std::string& path, std::string_view record) {
  return AppendRecord(Find(path), record, true);
}

bool LinuxDisk::AppendUnsettled(const std::string& path, std::string_view record) {
  return AppendRecord(Find(path), record, false);
}

bool LinuxDisk::Settle(const std::string& path) {
  const std::string target = FollowLinks(Find(path));
  struct stat status {};
  const File file = OpenRegular(target, O_WRONLY | O_APPEND, status);
  if (!file || fdatasync(file.Get()) != 0) return false;
  // It may have been created since.
  SyncDirectory(DirectoryOf(target));
  return true;
}

bool LinuxDisk::Remove(const std::string& path) {
  return unlink(Find(path).c_str()) == 0;
}

}  // namespace orvane
