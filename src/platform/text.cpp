#include "platform/text.h"

#include <algorithm>

namespace orvane {

std::string_view Trimmed(std::string_view text, std::string_view blanks) {
  text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
  return text.substr(0, text.find_last_not_of(blanks) + 1);
}

bool SameName(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return Lower(x) == Lower(y); });
}

}  // namespace orvane
