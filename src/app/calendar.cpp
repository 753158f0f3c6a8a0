#include "app/calendar.h"

#include <chrono>
#include <cstdio>

namespace orvane {

bool IsLeapYear(int year) {
  return year % 400 == 0 || (year % 4 == 0 && year % 100 != 0);
}

int MonthKind(int month) {
  switch (month) {
    case 1:
    case 3:
    case 5:
    case 7:
    case 8:
    case 10:
    case 12:
      return 2;
    case 4:
    case 6:
    case 9:
    case 11:
      return 1;
    case 2:
      return 0;
    default:
      return -1;
  }
}

int Weekday(const LocalTime& time) {
  using namespace std::chrono;
  const year_month_day date{year{time.year}, month{static_cast<unsigned>(time.month)},
                            day{static_cast<unsigned>(time.day)}};
  return static_cast<int>(weekday{sys_days{date}}.iso_encoding());
}

std::string DateText(const LocalTime& time) {
  char text[40];
  std::snprintf(text, sizeof text, "%04d-%02d-%02d", time.year, time.month, time.day);
  return text;
}

std::string TimeText(const LocalTime& time) {
  char text[40];
  std::snprintf(text, sizeof text, "%d:%02d:%02d", time.hour, time.minute, time.second);
  return text;
}

}  // namespace orvane
