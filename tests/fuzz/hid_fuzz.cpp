// Bytes in HID reports: those of a program that writes anything, and text that goes through.
#include <algorithm>

#include "fuzz/fuzz_input.h"
#include "platform/hid_reports.h"
#include "simulate/hid_line.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace orvane;
  using orvane::test::Require;
  test::FuzzInput input(data, size);
  HidLine line;
  std::size_t put = 0, got = 0;
  while (!input.Empty()) {
    const std::string bytes = std::string(input.Take(input.Choice(32)));
    put += bytes.size();
    const std::string heard = line.Receive(bytes);
    got += heard.size();
    Require(heard.find('\0') == std::string::npos, "filling belongs to nothing");
    Require(got * (kReportBytes + 1) <= put * kReportBytes, "no more comes out than went in");

    std::string text = bytes, reports, back;
    std::erase(text, '\0');
    for (const OutputReport& report : OutputReports(text)) {
      Require(report[0] == 0, "reports have no number");
      reports.append(report.begin(), report.end());
    }
    Require(HidLine().Receive(reports) == text, "a command arrives as it was sent");
    for (std::size_t i = 0; i < text.size(); i += kReportBytes) {
      AppendText(HidLine::Report(text.substr(i, kReportBytes)), back);
    }
    Require(back == text, "a reply arrives as it was sent");
  }
  return 0;
}
