// A file descriptor that closes itself, and whole reads and writes on it.
#pragma once

#include <unistd.h>

#include <string>
#include <string_view>
#include <utility>

namespace orvane {

class File {
 public:
  File() = default;
  explicit File(int descriptor) : descriptor_(descriptor) {}
  File(File&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
  File& operator=(File&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
  }
  ~File() {
    if (descriptor_ >= 0) close(descriptor_);
  }

  explicit operator bool() const { return descriptor_ >= 0; }
  int Get() const { return descriptor_; }

  // Closes the file now. False when the system reports a loss.
  bool Close() { return close(std::exchange(descriptor_, -1)) == 0; }

  // Everything from the present place to the end, added to `content`. False on an error.
  bool ReadAll(std::string& content) const;

  // False when not all of it could be written.
  bool WriteAll(std::string_view content) const;

 private:
  int descriptor_ = -1;
};

}  // namespace orvane
