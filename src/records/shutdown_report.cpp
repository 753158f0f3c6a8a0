#include "records/shutdown_report.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace orvane {
namespace {

// Longest values, in bytes.
constexpr std::size_t kCountSize = 9;
constexpr std::size_t kNameSize = 99;

std::string Value(const ProfileFile& file, std::string_view section, std::string_view key,
                  std::size_t size) {
  std::string value = ReadProfileValue(file, section, key, size);
  value.resize(std::min(value.size(), value.find('\0')));
  return value;
}

// The value of the digits at the start of a text; 0 without any. No count is longer than 9 digits.
std::int64_t Count(std::string_view text) {
  std::int64_t count = 0;
  for (const char c : text) {
    if (c < '0' || c > '9') break;
    count = count * 10 + (c - '0');
  }
  return count;
}

std::string Numbered(std::string_view name, std::int64_t number) {
  return std::string(name) + std::to_string(number);
}

}  // namespace

ShutdownReport::ShutdownReport(Disk& disk, std::string path)
    : disk_(disk), path_(std::move(path)) {}

ProfileFile ShutdownReport::ReadFile() const {
  return ProfileFile::Parse(disk_.Read(path_).value_or(""));
}

void ShutdownReport::Activate() {
  applications_ = 0;
  report_ = ReadFile();
  if (Value(report_, "Main", "ShowMsg", kCountSize) != "1") return;
  applications_ = Count(Value(report_, "Main", "AppNumber", kCountSize));
}

std::string ShutdownReport::SectionName(std::int64_t index) const {
  return Value(report_, "Main", Numbered("App", index), kNameSize);
}

std::string ShutdownReport::Title(std::int64_t index) const {
  return Value(report_, SectionName(index), "Title", kNameSize);
}

void ShutdownReport::ShowFileList(std::int64_t index) {
  section_ = SectionName(index);
  chosen_ = ReadFile();
  files_ = Count(Value(chosen_, section_, "FileNumber", kCountSize));
}

std::string ShutdownReport::FileName(std::int64_t index) const {
  return Value(chosen_, section_, Numbered("File", index), kNameSize);
}

void ShutdownReport::Clear() {
  applications_ = 0;
  files_ = 0;
  static_cast<void>(WriteProfileValues(disk_, "Main", {{"ShowMsg", "0"}}, path_));
}

}  // namespace orvane
