// The words of a line of the log.
#pragma once

#include <QString>
#include <string_view>

namespace orvane {

// A line of UTF-8, or else of GB18030, in which an older installation may have written it. Of a
// long one only the beginning, enough to fill any row; bytes that are neither show as such.
QString LogText(std::string_view line);

}  // namespace orvane
