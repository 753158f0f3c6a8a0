// Text of a serial line in HID reports, as USB-to-serial chips carry it: 8 bytes each way, the last
// one of a text filled up with zero bytes, without report numbers (USB Device Class Definition for
// HID 1.11, 8.1). Towards the device the number 0 stands before the 8 bytes all the same, as the
// kernel's hidraw interface wants it.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

inline constexpr std::size_t kReportBytes = 8;

using OutputReport = std::array<char, kReportBytes + 1>;

// The reports that carry `text`, which holds no zero byte.
std::vector<OutputReport> OutputReports(std::string_view text);

// Appends the text that `reports`, a stretch of input reports, carry. Zero bytes belong to nothing.
void AppendText(std::string_view reports, std::string& text);

}  // namespace orvane
