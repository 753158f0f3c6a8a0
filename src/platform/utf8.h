// Texts are UTF-8; where one has to be short, no character of it is split.
#pragma once

#include <cstddef>
#include <string_view>

namespace orvane {

// What some editors put in front of a file.
inline constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// The beginning of `text` in at most `limit` bytes, without a last character that does not fit
// whole. Bytes that are no UTF-8 are cut anywhere.
std::string_view WholeCharacters(std::string_view text, std::size_t limit);

}  // namespace orvane
