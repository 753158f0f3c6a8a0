#include "support/memory_disk.h"

#include <algorithm>

namespace orvane::test {
namespace {

char Lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

struct MemoryView : FileView {
  explicit MemoryView(std::string bytes) : content(std::move(bytes)) {}
  std::string_view Bytes() const override { return content; }
  std::string content;
};

}  // namespace

std::string MemoryDisk::Find(const std::string& path) const {
  if (files.contains(path)) return path;
  const auto same = [](char a, char b) { return Lower(a) == Lower(b); };
  for (const auto& [name, content] : files) {
    if (std::equal(name.begin(), name.end(), path.begin(), path.end(), same)) return name;
  }
  return path;
}

std::optional<std::string> MemoryDisk::Read(const std::string& path) const {
  const auto file = files.find(Find(path));
  return file == files.end() ? std::nullopt : std::optional(file->second);
}

std::unique_ptr<FileView> MemoryDisk::Open(const std::string& path) const {
  auto content = Read(path);
  return content ? std::make_unique<MemoryView>(std::move(*content)) : nullptr;
}

bool MemoryDisk::Exists(const std::string& path) const {
  return files.contains(Find(path));
}

bool MemoryDisk::Replace(const std::string& path, std::string_view content) {
  if (refuse_writes) return false;
  files[Find(path)] = content;
  ++replacements;
  return true;
}

bool MemoryDisk::Append(const std::string& path, std::string_view record) {
  if (refuse_writes) return false;
  files[Find(path)] += record;
  return true;
}

bool MemoryDisk::AppendUnsettled(const std::string& path, std::string_view record) {
  if (!Append(path, record)) return false;
  unsettled.insert(Find(path));
  return true;
}

bool MemoryDisk::Settle(const std::string& path) {
  if (refuse_writes || !Exists(path)) return false;
  unsettled.erase(Find(path));
  return true;
}

bool MemoryDisk::Remove(const std::string& path) {
  return !refuse_writes && files.erase(Find(path)) > 0;
}

}  // namespace orvane::test
