// Small questions about texts.
#pragma once

#include <string_view>

namespace orvane {

// Blanks as files and boxes know them; the lines of the UPS and the modem know the first alone.
inline constexpr std::string_view kBlankOrTab = " \t";

// `text` without the `blanks` at both its ends.
std::string_view Trimmed(std::string_view text, std::string_view blanks = " ");

// An ASCII letter in lower case; any other byte as it is.
constexpr char Lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// Equal without regard to the case of ASCII letters.
bool SameName(std::string_view a, std::string_view b);

}  // namespace orvane
