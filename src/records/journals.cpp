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

bool Journals::WriteLog(std::string_view text) {
  const LocalTime now = clock_.Now();
  return disk_.Append(log_path_,
                      Quoted(DateText(now) + ' ' + TimeText(now) + ' ' + std::string(text)));
}

bool Journals::WriteDateRec(int code) {
  const LocalTime now = clock_.Now();
  const std::string hour = {static_cast<char>('0' + now.hour / 10),
                            static_cast<char>('0' + now.hour % 10)};
  return disk_.Append(date_rec_path_,
                      Quoted(DateText(now) + ' ' + hour + ' ' + std::to_string(code)));
}

}  // namespace orvane
