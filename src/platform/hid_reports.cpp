#include "platform/hid_reports.h"

#include <algorithm>
#include <iterator>

namespace orvane {

std::vector<OutputReport> OutputReports(std::string_view text) {
  std::vector<OutputReport> reports;
  for (; !text.empty(); text.remove_prefix(std::min(text.size(), kReportBytes))) {
    OutputReport& report = reports.emplace_back();
    text.copy(report.data() + 1, kReportBytes);
  }
  return reports;
}

void AppendText(std::string_view reports, std::string& text) {
  std::copy_if(reports.begin(), reports.end(), std::back_inserter(text),
               [](char byte) { return byte != '\0'; });
}

}  // namespace orvane
