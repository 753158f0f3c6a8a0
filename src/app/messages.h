// The program's texts by number, in English and Chinese.
#pragma once

#include <string_view>

namespace orvane {

// What is added to a message number to get its Chinese row.
inline constexpr int kChineseBase = 1000;

// One row of the message table, UTF-8: rows 1 to 42 and 51 to 121 are English, the same plus 1000
// Chinese. Callers pass `ResBase` plus the message number at the moment of use. A number without a
// row gives an empty text. Constant time.
std::string_view LoadResString(int number);

}  // namespace orvane
