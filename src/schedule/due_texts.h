// Dates and times as people type them into the schedule.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/clock.h"

namespace orvane {

// The normal form of a date is that of DateText, "yyyy-MM-dd"; that of a time is this, "H:mm" on
// the 24-hour clock. Two texts mean the same day, or the same minute, exactly when their normal
// forms are equal.
std::string TimeForm(const LocalTime& time);

// Blanks that may stand round a typed text. A line end can only have come along with a paste; in
// the file it becomes a blank.
inline constexpr std::string_view kTypedBlanks = " \t\r\n";

// The normal form of a typed date: year of four digits, month and day of one or two, with "-" or
// "/" between them. Blanks round it do not count. Nothing when the text is no such date or the
// calendar has no such day.
std::optional<std::string> ReadDate(std::string_view text);

// The normal form of a typed time: hour of one or two digits and two-digit minutes, with or without
// two-digit seconds; on the 24-hour clock, or on the 12-hour clock with AM or PM behind it in any
// case, where the minutes may be missing too. Blanks round it and before the marker do not count.
// Nothing when the text is no such time or the clock never shows it.
std::optional<std::string> ReadTime(std::string_view text);

}  // namespace orvane
