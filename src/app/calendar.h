// Dates and times as the program writes them, and two small questions about the calendar.
#pragma once

#include <string>

#include "platform/clock.h"

namespace orvane {

// The Gregorian rule: every fourth year, but of the centuries only every fourth.
bool IsLeapYear(int year);

// 2 for a month of 31 days, 1 for one of 30, 0 for February, -1 for a number that is no month.
int MonthKind(int month);

// 1 Monday to 7 Sunday (ISO 8601).
int Weekday(const LocalTime& time);

// "yyyy-MM-dd" (ISO 8601 calendar date).
std::string DateText(const LocalTime& time);

// "H:mm:ss", 24-hour clock, the hour without a leading zero.
std::string TimeText(const LocalTime& time);

}  // namespace orvane
