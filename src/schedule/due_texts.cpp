#include "schedule/due_texts.h"

#include <algorithm>

#include "app/calendar.h"
#include "platform/text.h"

namespace orvane {
namespace {

constexpr int kLastHour = 23;
constexpr int kLastMinute = 59;
constexpr int kLastSecond = 59;

// Reads a text from the front. What does not fit is left where it stands.
class Reader {
 public:
  explicit Reader(std::string_view text) : rest_(Trimmed(text, kTypedBlanks)) {}

  void SkipBlanks() { rest_ = Trimmed(rest_, kTypedBlanks); }

  // A number of `least` to `most` digits, all that stand here.
  std::optional<int> Digits(std::size_t least, std::size_t most) {
    const std::size_t size = std::min(rest_.find_first_not_of("0123456789"), rest_.size());
    if (size < least || size > most) return std::nullopt;
    int value = 0;
    for (const char digit : rest_.substr(0, size)) value = value * 10 + (digit - '0');
    rest_.remove_prefix(size);
    return value;
  }

  bool Skip(char c) {
    if (!rest_.starts_with(c)) return false;
    rest_.remove_prefix(1);
    return true;
  }

  bool SkipMarker(char first) {
    if (rest_.size() < 2 || (rest_[0] | 0x20) != first || (rest_[1] | 0x20) != 'm') return false;
    rest_.remove_prefix(2);
    return true;
  }

  bool AtEnd() const { return rest_.empty(); }

 private:
  std::string_view rest_;
};

}  // namespace

std::string TimeForm(const LocalTime& time) {
  const std::string text = TimeText(time);
  return text.substr(0, text.rfind(':'));
}

std::optional<std::string> ReadDate(std::string_view text) {
  Reader reader(text);
  const auto year = reader.Digits(4, 4);
  const char separator = reader.Skip('/') ? '/' : '-';
  if (!year || (separator == '-' && !reader.Skip('-'))) return std::nullopt;
  const auto month = reader.Digits(1, 2);
  if (!month || !reader.Skip(separator)) return std::nullopt;
  const auto day = reader.Digits(1, 2);
  if (!day || !reader.AtEnd()) return std::nullopt;
  const auto date = std::chrono::year{*year} / *month / *day;
  return date.ok() ? std::optional(DateText(date)) : std::nullopt;
}

std::optional<std::string> ReadTime(std::string_view text) {
  Reader reader(text);
  auto hour = reader.Digits(1, 2);
  std::optional<int> minute = 0;
  std::optional<int> second = 0;
  const bool has_minute = reader.Skip(':');
  if (has_minute) minute = reader.Digits(2, 2);
  if (has_minute && reader.Skip(':')) second = reader.Digits(2, 2);
  if (!hour || !minute || !second || *minute > kLastMinute || *second > kLastSecond) {
    return std::nullopt;
  }
  if (reader.AtEnd()) {
    if (!has_minute || *hour > kLastHour) return std::nullopt;
    return TimeForm({.hour = *hour, .minute = *minute});
  }
  reader.SkipBlanks();
  const bool afternoon = reader.SkipMarker('p');
  if ((!afternoon && !reader.SkipMarker('a')) || !reader.AtEnd()) return std::nullopt;
  if (*hour < 1 || *hour > 12) return std::nullopt;
  return TimeForm({.hour = *hour % 12 + (afternoon ? 12 : 0), .minute = *minute});
}

}  // namespace orvane
