// The files of the program on a Linux file system.
#pragma once

#include "platform/disk.h"

namespace orvane {

class LinuxDisk : public Disk {
 public:
  // Regular files only: a directory or a pipe of the name counts as unreadable, and so does a file
  // of more than 64 MB for Read.
  std::optional<std::string> Read(const std::string& path) const override;
  bool Exists(const std::string& path) const override;

  // The file keeps its mode, and a symbolic link stays one: the file that it leads to is replaced.
  // A file that this user may not write is not replaced either.
  bool Replace(const std::string& path, std::string_view content) override;
  bool Append(const std::string& path, std::string_view record) override;
  bool AppendUnsettled(const std::string& path, std::string_view record) override;
  bool Settle(const std::string& path) override;
  bool Remove(const std::string& path) override;
};

}  // namespace orvane
