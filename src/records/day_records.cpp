#include "records/day_records.h"

#include <iterator>

#include "records/lines.h"

namespace orvane {
namespace {

// A record as its writer leaves it is a quotation mark, a line feed, date, blank, two digits of the
// hour, blank, code, a quotation mark and the line end. Places are counted in characters from 0.
constexpr std::size_t kRecordBytes = 20;
constexpr std::size_t kDateAt = 2;
constexpr std::size_t kDateSize = 10;
constexpr std::size_t kHourAt = 13;
constexpr std::size_t kCodeAt = 16;
constexpr std::size_t kFieldsEnd = 17;
constexpr std::size_t kBetweenFields[] = {0, 1, 12, 15};

constexpr bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

// Bytes of the first character of a text; a byte that begins no UTF-8 character is one by itself.
std::size_t CharacterBytes(std::string_view text) {
  const auto byte = [text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned lead = byte(0);
  const std::size_t bytes = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1;
  if (bytes > text.size()) return 1;
  for (std::size_t i = 1; i < bytes; ++i) {
    if ((byte(i) & 0xC0) != 0x80) return 1;
  }
  return bytes;
}

// The value of a field, blanks round its digits passed over.
std::optional<int> Number(std::string_view text) {
  while (text.starts_with(' ')) text.remove_prefix(1);
  while (text.ends_with(' ')) text.remove_suffix(1);
  if (text.empty()) return std::nullopt;
  int value = 0;
  for (const char c : text) {
    if (!IsDigit(c)) return std::nullopt;
    value = value * 10 + (c - '0');
  }
  return value;
}

// The characters of a line as far as the fields reach, a byte for each: NUL for one that is not
// ASCII, which is none of the fields'. Shorter where the line is.
std::string_view Characters(std::string_view line, char (&characters)[kFieldsEnd]) {
  // Mostly a character is a byte, certainly so where the fields hold digits and this holds:
  if (line.size() >= kFieldsEnd && std::ranges::all_of(kBetweenFields, [&](std::size_t i) {
        return static_cast<unsigned char>(line[i]) < 0x80;
      })) {
    return line.substr(0, kFieldsEnd);
  }
  std::size_t count = 0;
  while (count < kFieldsEnd && !line.empty()) {
    const std::size_t bytes = CharacterBytes(line);
    characters[count++] = bytes == 1 ? line.front() : '\0';
    line.remove_prefix(bytes);
  }
  return {characters, count};
}

}  // namespace

std::optional<std::uint32_t> DateKey(std::string_view text) {
  if (text.size() != kDateSize || text[4] != '-' || text[7] != '-') return std::nullopt;
  std::uint32_t key = 0;
  for (const std::size_t i : {0U, 1U, 2U, 3U, 5U, 6U, 8U, 9U}) {
    if (!IsDigit(text[i])) return std::nullopt;
    key = key * 10 + static_cast<std::uint32_t>(text[i] - '0');
  }
  return key;
}

void DayRecords::Read(std::string_view bytes) {
  records_.clear();
  records_.reserve(bytes.size() / kRecordBytes);
  ForEachLine(bytes, [this](std::string_view line) { ReadLine(line); });
  // They are written as time goes by, so that mostly there is nothing to sort.
  if (!std::is_sorted(records_.begin(), records_.end(), Earlier)) {
    std::stable_sort(records_.begin(), records_.end(), Earlier);
  }
}

std::uint32_t DayRecords::DateBefore(std::uint32_t date) const {
  const auto own = std::lower_bound(records_.begin(), records_.end(), Record{date, 0, 0}, Earlier);
  return own == records_.begin() ? 0 : std::prev(own)->date;
}

std::uint32_t DayRecords::DateAfter(std::uint32_t date) const {
  const auto next = std::upper_bound(records_.begin(), records_.end(), Record{date, 0, 0}, Earlier);
  return next == records_.end() ? 0 : next->date;
}

void DayRecords::ReadLine(std::string_view line) {
  char buffer[kFieldsEnd];
  const std::string_view text = Characters(line, buffer);
  if (text.size() < kFieldsEnd) return;
  const auto date = DateKey(text.substr(kDateAt, kDateSize));
  const auto hour = Number(text.substr(kHourAt, 2));
  const auto code = Number(text.substr(kCodeAt));
  if (!date || !hour || !code) return;
  records_.push_back({*date, static_cast<std::uint8_t>(*hour), static_cast<std::uint8_t>(*code)});
}

}  // namespace orvane
