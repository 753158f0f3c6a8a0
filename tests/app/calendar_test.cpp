#include "app/calendar.h"

#include <gtest/gtest.h>

namespace orvane::test {
namespace {

TEST(CalendarTest, TextsAndWeekdays) {
  const std::tuple<LocalTime, std::string, int> cases[] = {
      {{2001, 2, 16, 9, 5, 33}, "2001-02-16 9:05:33", 5},
      {{2000, 12, 31, 0, 0, 0}, "2000-12-31 0:00:00", 7},
      {{2026, 11, 23, 23, 59, 9}, "2026-11-23 23:59:09", 1}};
  for (const auto& [time, text, weekday] : cases) {
    EXPECT_EQ(DateText(time) + ' ' + TimeText(time), text);
    EXPECT_EQ(Weekday(time), weekday);
  }
}

}  // namespace
}  // namespace orvane::test
