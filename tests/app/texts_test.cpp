// Captions and the calendar.
#include <gtest/gtest.h>

#include "app/calendar.h"
#include "app/captions.h"

namespace orvane::test {
namespace {

TEST(CaptionsTest, FollowTheLanguageAndLeaveTheStatesAlone) {
  State state;
  Panel panel;
  panel.mains.Caption("Fail");
  int changes = 0;
  panel.link.Change = [&] { ++changes; };
  SetCaptions(state, panel);
  EXPECT_EQ(panel.analysis_menu.Text(), "A&Nalysis");
  EXPECT_EQ(panel.day_history_entry.Text(), "Event &Day");
  EXPECT_EQ(changes, 1);

  panel.link.Caption("Conn");
  state.language = Language::kChinese;
  SetCaptions(state, panel);
  EXPECT_EQ(panel.system_menu.Text(), "系统(&S)");
  EXPECT_EQ(panel.link.Caption(), "未连接");
  EXPECT_EQ(panel.mains.Caption(), "Fail");
  EXPECT_EQ(changes, 3);
}

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
