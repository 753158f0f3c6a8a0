// Numbers as the UPS writes them and as the panel shows them.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace orvane {

// The number that `text` holds from end to end, blanks round it aside: an optional sign, decimal
// digits with at most one point, an optional exponent. Nothing for any other text.
std::optional<double> ReadNumber(std::string_view text);

// The same as a 32-bit float, and as a 16-bit integer rounded to the nearest, ties to even. Nothing
// also when the number does not fit.
std::optional<float> ReadSingle(std::string_view text);
std::optional<std::int16_t> ReadInteger(std::string_view text);

// To the nearest integer, ties to the even one.
int RoundHalfEven(double value);

// Decimal text of a number, held in place without a heap allocation.
class NumberText {
 public:
  // Up to 7 significant digits, no trailing zeros, no point for a whole number: 230.0 is "230".
  explicit NumberText(float value);
  explicit NumberText(int value);

  operator std::string_view() const { return {text_, size_}; }

 private:
  char text_[24];
  std::size_t size_ = 0;
};

}  // namespace orvane
