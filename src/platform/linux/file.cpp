#include "platform/linux/file.h"

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cerrno>

namespace orvane {
bool File::ReadAll(std::string& content) const {
  struct stat status {};
  if (fstat(descriptor_, &status) == 0 && S_ISREG(status.st_mode)) {
    content.reserve(content.size() + static_cast<std::size_t>(status.st_size));
  }
  std::array<char, std::size_t{64} * 1024> piece;
  for (;;) {
    const ssize_t got = read(descriptor_, piece.data(), piece.size());
    if (got == 0) return true;
    if (got > 0) {
      content.append(piece.data(), static_cast<std::size_t>(got));
    } else if (errno != EINTR) {
      return false;
    }
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
