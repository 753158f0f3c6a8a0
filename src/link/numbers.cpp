#include "link/numbers.h"

#include <charconv>
#include <cmath>
#include <limits>

#include "platform/text.h"

namespace orvane {
namespace {

constexpr int kSingleDigits = 7;

}  // namespace

std::optional<double> ReadNumber(std::string_view text) {
  text = Trimmed(text);
  if (text.starts_with('+')) {
    text.remove_prefix(1);
    if (text.starts_with('-')) return std::nullopt;
  }
  double value = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc{} || stop != end || !std::isfinite(value)) return std::nullopt;
  return value;
}

// A number too small for a float is 0.
std::optional<float> ReadSingle(std::string_view text) {
  const auto value = ReadNumber(text);
  if (!value || std::abs(*value) > std::numeric_limits<float>::max()) return std::nullopt;
  return static_cast<float>(*value);
}

std::optional<std::int16_t> ReadInteger(std::string_view text) {
  const auto value = ReadNumber(text);
  if (!value) return std::nullopt;
  const double rounded = std::nearbyint(*value);
  if (rounded < std::numeric_limits<std::int16_t>::min() ||
      rounded > std::numeric_limits<std::int16_t>::max()) {
    return std::nullopt;
  }
  return static_cast<std::int16_t>(rounded);
}

int RoundHalfEven(double value) {
  return static_cast<int>(std::nearbyint(value));
}

NumberText::NumberText(float value) {
  // A zero has no sign on a panel.
  if (value == 0) value = 0;
  const auto [end, error] =
      std::to_chars(text_, text_ + sizeof text_, value, std::chars_format::general, kSingleDigits);
  size_ = error == std::errc{} ? static_cast<std::size_t>(end - text_) : 0;
}

NumberText::NumberText(int value) {
  const auto [end, error] = std::to_chars(text_, text_ + sizeof text_, value);
  size_ = error == std::errc{} ? static_cast<std::size_t>(end - text_) : 0;
}

}  // namespace orvane
