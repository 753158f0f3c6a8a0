// The writers of the two journals: `System.log`, a line of text for each notable event, and
// `DateRec.rec`, a record of 20 bytes for each power event. Neither keeps a file open.
#pragma once

#include <string>
#include <string_view>

#include "platform/clock.h"
#include "platform/disk.h"

namespace orvane {

// The event of a daily record; its number stands in the file.
enum class RecordCode { kScheduleDown = 0, kMainsFailed = 1, kBatteryLowOrUpsFault = 2 };

// When a line or record is on the medium: when the writer returns, or with Settle.
enum class OnMedium { kNow, kWithSettle };

class Journals {
 public:
  // `directory` is the program's, without a slash at the end.
  Journals(Disk& disk, const Clock& clock, const std::string& directory);

  // Appends one line to `System.log`: in double quotes a line feed, date, blank, time, blank and
  // `text`; then carriage return and line feed. False when the line could not be written.
  bool WriteLog(std::string_view text, OnMedium when = OnMedium::kNow);

  // Appends one record to `DateRec.rec`: in double quotes a line feed, date, blank, two-digit hour,
  // blank and `code`; then carriage return and line feed. False when it could not be written.
  bool WriteDateRec(RecordCode code, OnMedium when = OnMedium::kNow);

  // Has what was written before on the medium. False when that failed for the journal at `path`.
  bool Settle(const std::string& path) { return disk_.Settle(path); }

  const std::string& LogPath() const { return log_path_; }
  const std::string& DateRecPath() const { return date_rec_path_; }

 private:
  bool Add(const std::string& path, const std::string& line, OnMedium when);

  Disk& disk_;
  const Clock& clock_;
  std::string log_path_;
  std::string date_rec_path_;
};

}  // namespace orvane
