#include "platform/profile.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "platform/text.h"
#include "platform/utf8.h"

namespace orvane {
namespace {

bool IsQuote(char c) {
  return c == '"' || c == '\'';
}

bool IsLineEnd(char c) {
  return c == '\r' || c == '\n';
}

std::string_view Trim(std::string_view text) {
  return Trimmed(text, kBlankOrTab);
}

std::string_view WithoutLineEnd(std::string_view line) {
  while (!line.empty() && IsLineEnd(line.back())) line.remove_suffix(1);
  return line;
}

std::string Folded(std::string_view name) {
  std::string folded(name);
  std::transform(folded.begin(), folded.end(), folded.begin(), Lower);
  return folded;
}

// The first line of `text` with its end: CR LF, or either of them alone.
std::string_view FirstLine(std::string_view text) {
  const std::size_t end = text.find_first_of("\r\n");
  if (end == std::string_view::npos) return text;
  const bool both = text[end] == '\r' && end + 1 < text.size() && text[end + 1] == '\n';
  return text.substr(0, end + (both ? 2 : 1));
}

bool InQuotes(std::string_view value) {
  return value.size() >= 2 && IsQuote(value.front()) && value.front() == value.back();
}

std::string_view ReadValue(std::string_view rest_of_line) {
  const std::string_view value = Trim(WithoutLineEnd(rest_of_line));
  return InQuotes(value) ? value.substr(1, value.size() - 2) : value;
}

std::string OneLine(std::string_view value) {
  std::string line;
  while (!value.empty()) {
    const std::string_view part = FirstLine(value);
    const std::string_view words = WithoutLineEnd(part);
    line += words;
    if (words.size() < part.size()) line += ' ';
    value.remove_prefix(part.size());
  }
  return line;
}

// How a value is written to be read back as it stands.
std::string WrittenValue(const std::string& value) {
  return ReadValue(value) == value ? value : '"' + value + '"';
}

}  // namespace

ProfileFile ProfileFile::Parse(std::string_view text) {
  ProfileFile file;
  Section* open = nullptr;
  if (text.starts_with(kByteOrderMark)) {
    file.AddForeign(kByteOrderMark);
    text.remove_prefix(kByteOrderMark.size());
  }
  const std::string_view first = FirstLine(text);
  if (const auto words = WithoutLineEnd(first); words.size() < first.size()) {
    file.line_end_ = first.substr(words.size());
  }
  while (!text.empty()) {
    const std::string_view line = FirstLine(text);
    file.AddLine(line, open);
    text.remove_prefix(line.size());
  }
  return file;
}

// `open` is the section that the line belongs to; null before the first, and in one that has a
// namesake before it.
void ProfileFile::AddLine(std::string_view line, Section*& open) {
  const std::string_view words = Trim(WithoutLineEnd(line));
  if (words.empty() || words.front() == ';') return AddForeign(line);
  const std::size_t close = words.find(']');
  if (words.front() == '[' && close != std::string_view::npos) {
    const auto [place, is_new] = sections_.try_emplace(Folded(Trim(words.substr(1, close - 1))));
    open = is_new ? &place->second : nullptr;
    if (!is_new) return AddForeign(line);
    pieces_.emplace_back(line);
    foreign_last_ = false;
    open->last = std::prev(pieces_.end());
    return;
  }
  const std::size_t equals = line.find('=');
  if (!open || equals == std::string_view::npos) return AddForeign(line);
  const auto [place, is_new] = open->keys.try_emplace(Folded(Trim(line.substr(0, equals))));
  if (!is_new) return AddForeign(line);
  pieces_.emplace_back(line);
  foreign_last_ = false;
  open->last = std::prev(pieces_.end());
  place->second = {open->last, equals + 1};
}

void ProfileFile::AddForeign(std::string_view line) {
  if (foreign_last_) {
    pieces_.back() += line;
  } else {
    pieces_.emplace_back(line);
    foreign_last_ = true;
  }
}

std::optional<std::string> ProfileFile::Get(std::string_view section, std::string_view key) const {
  const auto place = sections_.find(Folded(section));
  if (place == sections_.end()) return std::nullopt;
  const auto entry = place->second.keys.find(Folded(key));
  if (entry == place->second.keys.end()) return std::nullopt;
  return std::string(
      ReadValue(std::string_view(*entry->second.line).substr(entry->second.value_at)));
}

void ProfileFile::Set(std::string_view section, std::string_view key, std::string_view value) {
  const std::string one_line = OneLine(value);
  const auto [place, is_new] = sections_.try_emplace(Folded(section));
  Section& target = place->second;
  if (is_new) {
    CloseLastLine();
    if (!pieces_.empty()) AddForeign(line_end_);
    pieces_.push_back('[' + std::string(section) + ']' + line_end_);
    foreign_last_ = false;
    target.last = std::prev(pieces_.end());
  }
  const auto entry = target.keys.find(Folded(key));
  if (entry == target.keys.end()) return AddKey(target, key, one_line);
  std::string& line = *entry->second.line;
  const std::size_t value_at = entry->second.value_at;
  const std::string_view old = std::string_view(line).substr(value_at);
  if (ReadValue(old) == one_line) return;
  line.replace(value_at, WithoutLineEnd(old).size(), WrittenValue(one_line));
}

void ProfileFile::AddKey(Section& section, std::string_view key, const std::string& value) {
  if (std::next(section.last) == pieces_.end()) CloseLastLine();
  std::string line(key);
  line += '=' + WrittenValue(value) + line_end_;
  section.last = pieces_.insert(std::next(section.last), std::move(line));
  if (std::next(section.last) == pieces_.end()) foreign_last_ = false;
  section.keys[Folded(key)] = {section.last, key.size() + 1};
}

// The last line of a file may lack its end.
void ProfileFile::CloseLastLine() {
  if (pieces_.empty()) return;
  std::string& last = pieces_.back();
  if (!last.empty() && !IsLineEnd(last.back()) && last != kByteOrderMark) last += line_end_;
}

std::string ProfileFile::Text() const {
  std::string text;
  for (const std::string& piece : pieces_) text += piece;
  return text;
}

std::string ReadProfileValue(const ProfileFile& file, std::string_view section,
                             std::string_view key, std::size_t limit) {
  return std::string(WholeCharacters(file.Get(section, key).value_or(""), limit));
}

bool WriteProfileValues(Disk& disk, std::string_view section,
                        const std::vector<ProfileEntry>& entries, const std::string& path) {
  const auto text = disk.Read(path);
  if (!text && disk.Exists(path)) return false;
  ProfileFile file = ProfileFile::Parse(text.value_or(""));
  for (const ProfileEntry& entry : entries) file.Set(section, entry.key, entry.value);
  return disk.Replace(path, file.Text());
}

}  // namespace orvane
