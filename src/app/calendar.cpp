#include "app/calendar.h"

#include <cstdio>

namespace orvane {

std::chrono::year_month_day DateOf(const LocalTime& time) {
  return std::chrono::year{time.year} / time.month / time.day;
}

int Weekday(const LocalTime& time) {
  return static_cast<int>(std::chrono::weekday{DateOf(time)}.iso_encoding());
}

std::string DateText(const std::chrono::year_month_day& date) {
  char text[40];
  std::snprintf(text, sizeof text, "%04d-%02u-%02u", int{date.year()}, unsigned{date.month()},
                unsigned{date.day()});
  return text;
}

std::string DateText(const LocalTime& time) {
  return DateText(DateOf(time));
}

std::string TimeText(const LocalTime& time) {
  char text[40];
  std::snprintf(text, sizeof text, "%d:%02d:%02d", time.hour, time.minute, time.second);
  return text;
}

}  // namespace orvane
