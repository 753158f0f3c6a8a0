// A disk in memory, with the failures of a real one on demand.
#pragma once

#include <map>
#include <set>
#include <string>

#include "platform/disk.h"
#include "platform/text.h"

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

  std::optional<std::string> Read(const std::string& path) const override {
    const auto file = files.find(Find(path));
    return file == files.end() ? std::nullopt : std::optional(file->second);
  }
  bool Exists(const std::string& path) const override { return files.contains(Find(path)); }
  bool Replace(const std::string& path, std::string_view content) override {
    if (refuse_writes) return false;
    files[Find(path)] = content;
    ++replacements;
    return true;
  }
  bool Append(const std::string& path, std::string_view record) override {
    if (refuse_writes) return false;
    files[Find(path)] += record;
    return true;
  }
  bool AppendUnsettled(const std::string& path, std::string_view record) override {
    if (!Append(path, record)) return false;
    unsettled.insert(Find(path));
    return true;
  }
  bool Settle(const std::string& path) override {
    if (refuse_writes || !Exists(path)) return false;
    unsettled.erase(Find(path));
    return true;
  }
  bool Remove(const std::string& path) override {
    return !refuse_writes && files.erase(Find(path)) > 0;
  }

 private:
  // The path under which the file stands, whatever the case of its name.
  std::string Find(const std::string& path) const {
    for (const auto& [name, content] : files) {
      if (SameName(name, path)) return name;
    }
    return path;
  }
};

}  // namespace orvane::test
