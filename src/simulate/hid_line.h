// The device's end of a line that a USB chip carries in HID reports.
#pragma once

#include <string>
#include <string_view>

namespace orvane {

class HidLine {
 public:
  // The text in what a program has written, report by report. The rest of a report that is not
  // whole is kept for the next call; a report of another number carries nothing.
  std::string Receive(std::string_view bytes);

  // The input report for a piece of text of kReportBytes at most.
  static std::string Report(std::string_view piece);

 private:
  std::string pending_;
};

}  // namespace orvane
