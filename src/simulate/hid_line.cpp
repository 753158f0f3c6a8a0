#include "simulate/hid_line.h"

#include <tuple>

#include "platform/hid_reports.h"

namespace orvane {

std::string HidLine::Receive(std::string_view bytes) {
  constexpr std::size_t kReport = std::tuple_size_v<OutputReport>;
  pending_ += bytes;
  std::string text;
  for (; pending_.size() >= kReport; pending_.erase(0, kReport)) {
    if (pending_.front() == '\0') AppendText({pending_.data() + 1, kReportBytes}, text);
  }
  return text;
}

std::string HidLine::Report(std::string_view piece) {
  std::string report(piece);
  report.resize(kReportBytes);
  return report;
}

}  // namespace orvane
