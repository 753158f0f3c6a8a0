// The files of the program: small ones replaced whole, and journals that only grow. Paths are
// UTF-8. A file's name (the part behind the last slash) is found without regard to the case of
// ASCII letters; its directory is taken as it stands.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace orvane {

struct Disk {
  virtual ~Disk() = default;

  // The whole content; nothing when the file is absent, cannot be read or is larger than 1 GiB.
  virtual std::optional<std::string> Read(const std::string& path) const = 0;

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
