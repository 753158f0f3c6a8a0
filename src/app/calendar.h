// Dates and times as the program writes them.
#pragma once

#include <chrono>
#include <string>

#include "platform/clock.h"

namespace orvane {

// The day of a time on the wall.
std::chrono::year_month_day DateOf(const LocalTime& time);

// 1 Monday to 7 Sunday (ISO 8601).
int Weekday(const LocalTime& time);

// "yyyy-MM-dd" (ISO 8601 calendar date).
std::string DateText(const std::chrono::year_month_day& date);
std::string DateText(const LocalTime& time);

// "H:mm:ss", 24-hour clock, the hour without a leading zero.
std::string TimeText(const LocalTime& time);

}  // namespace orvane
