#include "records/journals.h"

#include "app/calendar.h"

namespace orvane {
namespace {

// One quoted string that opens with a line feed, as both journals have it.
std::string Quoted(std::string_view text) {
  std::string line = "\"\n";
  line += text;
  line += "\"\r\n";
  return line;
}

}  // namespace

Journals::Journals(Disk& disk, const Clock& clock, const std::string& directory)
    : disk_(disk),
      clock_(clock),
      log_path_(directory + "/System.log"),
      date_rec_path_(directory + "/DateRec.rec") {}

bool Journals::WriteLog(std::string_view text, OnMedium when) {
  const LocalTime now = clock_.Now();
  return Add(log_path_, Quoted(DateText(now) + ' ' + TimeText(now) + ' ' + std::string(text)),
             when);
}

bool Journals::WriteDateRec(RecordCode code, OnMedium when) {
  const LocalTime now = clock_.Now();
  const std::string hour = {static_cast<char>('0' + now.hour / 10),
                            static_cast<char>('0' + now.hour % 10)};
  const std::string number = std::to_string(static_cast<int>(code));
  return Add(date_rec_path_, Quoted(DateText(now) + ' ' + hour + ' ' + number), when);
}

bool Journals::Add(const std::string& path, const std::string& line, OnMedium when) {
  return when == OnMedium::kNow ? disk_.Append(path, line) : disk_.AppendUnsettled(path, line);
}

}  // namespace orvane
