#include "records/day_records.h"

#include <algorithm>
#include <cstring>

#include "platform/text.h"

namespace orvane {
namespace {

// A record as its writer leaves it; a 0 stands for any digit.
constexpr std::string_view kRecord = "\"\n0000-00-00 00 0\"\r\n";
constexpr std::size_t kRecordBytes = kRecord.size();
constexpr std::string_view kDate = "0000-00-00";
constexpr std::string_view kLineEnd = "\r\n";

// Places of the fields, counted in characters from 0.
constexpr std::size_t kDateAt = 2;
constexpr std::size_t kHourAt = 13;
constexpr std::size_t kCodeAt = 16;
constexpr std::size_t kFieldsEnd = 17;

static_assert(kRecordBytes == 20 && kRecord.substr(kDateAt, kDate.size()) == kDate);

using Word = std::uint64_t;

Word WordAt(const char* bytes) {
  Word word = 0;
  std::memcpy(&word, bytes, sizeof word);
  return word;
}

// What a text of a form may hold, a byte for each of its characters: the bits that do not vary,
// their values, and what carries a half byte above 9 over into the bits that do not.
template <const std::string_view& Form>
struct FormBytes {
  char fixed[Form.size()];
  char value[Form.size()];
  char carry[Form.size()];

  constexpr FormBytes() : fixed(), value(), carry() {
    for (std::size_t i = 0; i < Form.size(); ++i) {
      const bool digit = Form[i] == '0';
      fixed[i] = static_cast<char>(digit ? 0xF0 : 0xFF);
      value[i] = Form[i];
      carry[i] = digit ? 6 : 0;
    }
  }
};

// Has `text` the form of `Form`? Looks at eight characters at once; the last eight may overlap
// those before them.
template <const std::string_view& Form>
bool HasForm(const char* text) {
  static constexpr FormBytes<Form> kForm;
  constexpr Word kHalves = 0x0F0F0F0F0F0F0F0F;
  Word strange = 0;
  for (std::size_t i = 0; i < Form.size(); i += sizeof(Word)) {
    const std::size_t at = std::min(i, Form.size() - sizeof(Word));
    const Word word = WordAt(text + at);
    strange |= (word & WordAt(kForm.fixed + at)) ^ WordAt(kForm.value + at);
    strange |= ((word & kHalves) + WordAt(kForm.carry + at)) & ~kHalves;
  }
  return strange == 0;
}

// Of two texts of the form of a date.
bool SameDate(const char* a, const char* b) {
  constexpr std::size_t kRest = kDate.size() - sizeof(Word);
  return WordAt(a) == WordAt(b) && WordAt(a + kRest) == WordAt(b + kRest);
}

bool HasRecord(const char* at, const char* end) {
  return static_cast<std::size_t>(end - at) >= kRecordBytes && HasForm<kRecord>(at);
}

constexpr std::uint32_t Digit(char c) {
  return static_cast<std::uint32_t>(c - '0');
}

// Of a text of the right form: its digits as one decimal number.
std::uint32_t KeyOf(const char* date) {
  std::uint32_t key = 0;
  for (const int i : {0, 1, 2, 3, 5, 6, 8, 9}) key = key * 10 + Digit(date[i]);
  return key;
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
  text = Trimmed(text);
  if (text.empty()) return std::nullopt;
  int value = 0;
  for (const char c : text) {
    if (c < '0' || c > '9') return std::nullopt;
    value = value * 10 + static_cast<int>(Digit(c));
  }
  return value;
}

}  // namespace

std::optional<std::uint32_t> DateKey(std::string_view text) {
  if (text.size() != kDate.size() || !HasForm<kDate>(text.data())) return std::nullopt;
  return KeyOf(text.data());
}

void DayRecords::Read(std::string_view bytes) {
  // No line that is held is shorter than its fields and its end.
  const std::size_t most = bytes.size() / (kFieldsEnd + kLineEnd.size()) + 1;
  runs_.clear();
  hours_.resize(most);
  codes_.resize(most);
  count_ = 0;
  const char* at = bytes.data();
  const char* const end = at + bytes.size();
  while (at != end) {
    at = ReadRecords(at, end);
    const std::string_view rest(at, static_cast<std::size_t>(end - at));
    const std::size_t length = std::min(rest.find(kLineEnd), rest.size());
    ReadLine(rest.substr(0, length));
    at += std::min(length + kLineEnd.size(), rest.size());
  }
  hours_.resize(count_);
  codes_.resize(count_);
  if (count_ >= most / 2) return;
  hours_.shrink_to_fit();
  codes_.shrink_to_fit();
}

// Takes whole records of the exact form from `at` on; returns where the first other line begins.
const char* DayRecords::ReadRecords(const char* at, const char* end) {
  while (HasRecord(at, end)) {
    // The records of a day stand together.
    const char* const day = at + kDateAt;
    BeginRun(KeyOf(day));
    std::uint8_t* hour = hours_.data() + count_;
    std::uint8_t* code = codes_.data() + count_;
    do {
      *hour++ = static_cast<std::uint8_t>(Digit(at[kHourAt]) * 10 + Digit(at[kHourAt + 1]));
      *code++ = static_cast<std::uint8_t>(Digit(at[kCodeAt]));
      at += kRecordBytes;
    } while (HasRecord(at, end) && SameDate(at + kDateAt, day));
    count_ = static_cast<std::size_t>(code - codes_.data());
  }
  return at;
}

void DayRecords::ReadLine(std::string_view line) {
  // The characters of the line as far as the fields reach; what is not ASCII is none of theirs.
  char characters[kFieldsEnd] = {};
  std::size_t count = 0;
  while (count < kFieldsEnd && !line.empty()) {
    const std::size_t bytes = CharacterBytes(line);
    characters[count++] = bytes == 1 ? line.front() : '\0';
    line.remove_prefix(bytes);
  }
  if (count < kFieldsEnd) return;
  const std::string_view text(characters, count);
  const auto date = DateKey(text.substr(kDateAt, kDate.size()));
  const auto hour = Number(text.substr(kHourAt, 2));
  const auto code = Number(text.substr(kCodeAt, 1));
  if (!date || !hour || !code) return;
  BeginRun(*date);
  hours_[count_] = static_cast<std::uint8_t>(*hour);
  codes_[count_] = static_cast<std::uint8_t>(*code);
  ++count_;
}

void DayRecords::BeginRun(std::uint32_t date) {
  if (runs_.empty() || runs_.back().date != date) {
    runs_.push_back({date, static_cast<std::uint32_t>(count_)});
  }
}

std::size_t DayRecords::Memory() const {
  return runs_.size() * sizeof(Run) + hours_.capacity() + codes_.capacity();
}

}  // namespace orvane
