#include "app/settings.h"

#include <algorithm>
#include <charconv>
#include <optional>

#include "platform/text.h"
#include "platform/utf8.h"

namespace orvane {
namespace {

constexpr std::size_t kSlotsBeforePhone = 10;

// Takes the fields of one line from the front, each with the comma behind it.
class FieldReader {
 public:
  explicit FieldReader(std::string_view text) : rest_(text.substr(0, text.find_first_of("\r\n"))) {}

  // A plain decimal number of 16 bits; nothing when the field is no such number or is missing.
  std::optional<std::int16_t> Number() {
    std::string_view field = rest_.substr(0, rest_.find(','));
    Drop(field.size());
    field = Trimmed(field, kBlankOrTab);
    std::int16_t value = 0;
    const char* end = field.data() + field.size();
    const auto [stop, error] = std::from_chars(field.data(), end, value);
    if (error != std::errc{} || stop != end) return std::nullopt;
    return value;
  }

  // A text in double quotes, or bare up to the comma; nothing when the line is at its end or the
  // closing quote is missing.
  std::optional<std::string> Text() {
    rest_.remove_prefix(std::min(rest_.find_first_not_of(kBlankOrTab), rest_.size()));
    if (rest_.empty()) return std::nullopt;
    if (rest_.front() != '"') {
      std::string text(rest_.substr(0, rest_.find(',')));
      Drop(text.size());
      return text;
    }
    const std::size_t close = rest_.find('"', 1);
    if (close == std::string_view::npos) return std::nullopt;
    std::string text(rest_.substr(1, close - 1));
    Drop(std::min(rest_.find(',', close), rest_.size()));
    return text;
  }

 private:
  void Drop(std::size_t size) { rest_.remove_prefix(std::min(size + 1, rest_.size())); }

  std::string_view rest_;
};

// ParseSettings, telling whether it came to the end of the line.
bool ReadFields(std::string_view text, State& state) {
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  FieldReader fields(text);
  for (std::size_t slot = 0; slot < kSlotsBeforePhone; ++slot) {
    const auto value = fields.Number();
    if (!value) return false;
    state.Settings[slot] = *value;
  }
  const auto phone = fields.Text();
  if (!phone) return false;
  state.PhoneCode = *phone;
  const auto language = fields.Number();
  if (language) state.Settings[kLanguage] = *language;
  return language.has_value();
}

}  // namespace

void ParseSettings(std::string_view text, State& state) {
  static_cast<void>(ReadFields(text, state));
}

bool SettingsAreWhole(std::string_view text) {
  State read;
  return ReadFields(text, read);
}

std::string SettingsPath(const std::string& program_directory) {
  return program_directory + "/Orvane.ini";
}

void LoadSettings(const Disk& disk, const std::string& path, State& state) {
  if (const auto text = disk.Read(path)) ParseSettings(*text, state);
}

std::string SettingsLine(const State& state) {
  std::string line;
  for (std::size_t slot = 0; slot < kSlotsBeforePhone; ++slot) {
    line += std::to_string(state.Settings[slot]) + ',';
  }
  return line + '"' + state.PhoneCode + "\"," + std::to_string(state.Settings[kLanguage]) + "\r\n";
}

bool SaveSettings(Disk& disk, const std::string& path, const State& state) {
  return disk.Replace(path, SettingsLine(state));
}

std::string DeriveShutdownCommand(const State& state) {
  const int delay = state.Settings[kShutdownDelay];
  if (delay == 0) return "S.5";
  std::string digits = std::to_string(delay < 0 ? -delay : delay);
  if (digits.size() < 2) digits.insert(0, "0");
  return (delay < 0 ? "S-" : "S") + digits;
}

Language DeriveLanguage(const State& state) {
  return state.Settings[kLanguage] == 0 ? Language::kEnglish : Language::kChinese;
}

std::int32_t MainsFailureDelay(const State& state) {
  return state.Settings[kMainsMinutes] * 60 + state.Settings[kMainsSeconds];
}

std::int32_t BatteryLowDelay(const State& state) {
  return state.Settings[kLowMinutes] * 60 + state.Settings[kLowSeconds];
}

}  // namespace orvane
