#include "platform/linux/file.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>

namespace orvane {
namespace {

constexpr std::size_t kPiece = std::size_t{64} * 1024;

}  // namespace

bool File::ReadAll(std::string& content) const {
  struct stat status {};
  if (fstat(descriptor_, &status) == 0 && S_ISREG(status.st_mode)) {
    // With room for the read that finds the end.
    content.reserve(content.size() + static_cast<std::size_t>(status.st_size) + kPiece);
  }
  for (;;) {
    const std::size_t size = content.size();
    content.resize(std::max(content.capacity(), size + kPiece));
    const ssize_t got = read(descriptor_, content.data() + size, content.size() - size);
    content.resize(size + static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
    if (got == 0) return true;
    if (got < 0 && errno != EINTR) return false;
  }
}

bool File::WriteAll(std::string_view content) const {
  while (!content.empty()) {
    const ssize_t put = write(descriptor_, content.data(), content.size());
    if (put < 0 && errno != EINTR) return false;
    content.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(put, 0)));
  }
  return true;
}

}  // namespace orvane
