// A disk in memory, with the failures of a real one on demand.
#pragma once

#include <map>
#include <set>
#include <string>

#include "platform/disk.h"

namespace orvane::test {

class MemoryDisk : public Disk {
 public:
  // Content by path. Names are kept as first written.
  std::map<std::string, std::string> files;
  // Disk full, read-only directory, foreign owner: nothing can be written or removed.
  bool refuse_writes = false;
  // Whole replacements that succeeded.
  int replacements = 0;
  // Files with something in them that is not on the medium yet.
  std::set<std::string> unsettled;

  std::optional<std::string> Read(const std::string& path) const override;
  std::unique_ptr<FileView> Open(const std::string& path) const override;
  bool Exists(const std::string& path) const override;
  bool Replace(const std::string& path, std::string_view content) override;
  bool Append(const std::string& path, std::string_view record) override;
  bool AppendUnsettled(const std::string& path, std::string_view record) override;
  bool Settle(const std::string& path) override;
  bool Remove(const std::string& path) override;

 private:
  // The path under which the file stands, whatever the case of its name.
  std::string Find(const std::string& path) const;
};

}  // namespace orvane::test
