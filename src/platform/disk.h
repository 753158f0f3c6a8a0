// The files of the program: small ones replaced whole, journals that only grow, large ones read in
// place. Paths are UTF-8. A file's name (the part behind the last slash) is found without regard to
// the case of ASCII letters; its directory is taken as it stands.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace orvane {

// The bytes of a file as they stood when it was opened. Valid while the object lives, also when
// the file grows or is deleted in the meantime.
struct FileView {
  virtual ~FileView() = default;
  virtual std::string_view Bytes() const = 0;
};

struct Disk {
  virtual ~Disk() = default;

  // The whole content; nothing when the file is absent or cannot be read.
  virtual std::optional<std::string> Read(const std::string& path) const = 0;

  // The content in place, without a copy where the platform can; of a file that fails on the way,
  // what could be read. Null when the file is absent or cannot be read at all.
  virtual std::unique_ptr<FileView> Open(const std::string& path) const = 0;

  virtual bool Exists(const std::string& path) const = 0;

  // Puts `content` in the file's place in one step that survives a power cut: afterwards the file
  // is the old or the new one, whole. False, with the old file untouched, when it cannot be done.
  virtual bool Replace(const std::string& path, std::string_view content) = 0;

  // Adds `record` behind the end, creating the file if need be, and has it on the medium before it
  // returns. All or nothing: false leaves the file as it was.
  virtual bool Append(const std::string& path, std::string_view record) = 0;

  // The same, but leaves it to a later Settle to have the record on the medium: for whoever cannot
  // wait for one now.
  virtual bool AppendUnsettled(const std::string& path, std::string_view record) = 0;

  // Has everything that was written to the file on the medium. False when that failed or the file
  // is absent.
  virtual bool Settle(const std::string& path) = 0;

  // False when there was nothing to delete or it cannot be deleted.
  virtual bool Remove(const std::string& path) = 0;
};

}  // namespace orvane
