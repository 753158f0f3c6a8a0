// Messages, captions and the calendar.
#include <gtest/gtest.h>

#include "app/calendar.h"
#include "app/captions.h"
#include "app/messages.h"

namespace orvane::test {
namespace {

TEST(MessagesTest, RowsExistInBothLanguagesAndNowhereElse) {
  int rows = 0;
  for (int number = -5; number < 2000; ++number) rows += !LoadResString(number).empty();
  EXPECT_EQ(rows, 226);
  for (int number : {0, 43, 50, 122, 999, 1000, 1043, 1050, 1122, -1}) {
    EXPECT_EQ(LoadResString(number), "") << number;
  }
}

// Rows whose blanks, marks and misspellings are easily lost.
TEST(MessagesTest, EveryCharacterCounts) {
  struct Case {
    int number;
    const char* text;
  };
  const Case cases[] = {
      {7, "Can not dail,please check Modem line"},
      {12, "UPS Install on:Com"},
      {15, "The com port is invalidate!"},
      {26, "Normal"},
      {1026, "正 常"},
      {1012, "UPS安装在：COM"},
      {1033, "未连接"},
      {1081, "未连接"},
      {1035, "警告:市电中断.启动发电机前请先将UPS及设备从电网中去除,启动发电机1分钟后再开机工作."},
      {1090, "机    型:"},
      {1109, "电    池"},
      {1063, "关闭系统(&S)..."},
      {112, "Dbl_Click To Switch Interface"},
      {121, "Even Day"},
  };
  for (const Case& row : cases) EXPECT_EQ(LoadResString(row.number), row.text);
}

TEST(CaptionsTest, FollowTheLanguageAndLeaveTheStatesAlone) {
  State state;
  Panel panel;
  panel.lblAc.Caption("Fail");
  int changes = 0;
  panel.lblConnect.Change = [&] { ++changes; };
  SetCaptions(state, panel);
  EXPECT_EQ(panel.mnuSystem.Text(), "&System");
  EXPECT_EQ(panel.mnuDateAnalyse.Text(), "A&Nalysis");
  EXPECT_EQ(panel.mnuDateRecord.Text(), "Event &Day");
  EXPECT_EQ(panel.Label9[4].Caption(), "Load(%)");
  EXPECT_EQ(panel.Label9[1].Caption(), "(V)");
  EXPECT_EQ(panel.Label9[3].Caption(), "(V)");
  EXPECT_EQ(panel.lblApcCap[4].Caption(), "Temp.");
  EXPECT_EQ(panel.lblApcCap[5].Caption(), "Freq.");
  EXPECT_EQ(panel.Label1[0].Caption(), "Batt Num:");
  EXPECT_EQ(panel.Label1[5].Caption(), "Batt Volt:");
  EXPECT_EQ(panel.lblConnect.Caption(), "No Conn");
  EXPECT_EQ(changes, 1);

  panel.lblConnect.Caption("Conn");
  state.ResBase = kChineseBase;
  SetCaptions(state, panel);
  EXPECT_EQ(panel.mnuSystem.Text(), "系统(&S)");
  EXPECT_EQ(panel.Frame1.Text(), "UPS基本信息");
  EXPECT_EQ(panel.picAPC.ToolTipText(), "双击鼠标可以切换界面");
  EXPECT_EQ(panel.Image2.ToolTipText(), "双击鼠标可以切换界面");
  EXPECT_EQ(panel.lblConnect.Caption(), "未连接");
  EXPECT_EQ(panel.lblAc.Caption(), "Fail");
  EXPECT_EQ(changes, 3);
}

TEST(CaptionsTest, EveryCaptionHasWords) {
  State state;
  Panel panel;
  SetCaptions(state, panel);
  for (const Caption* entry :
       {&panel.mnuSystem,   &panel.mnuSetup,       &panel.mnuOnOrOffBeep, &panel.mnuExit,
        &panel.mnuTimer,    &panel.mnuWeek,        &panel.mnuSpecial,     &panel.mnuTestTimer,
        &panel.mnuControl,  &panel.mnuTest10S,     &panel.mnuTestToLow,   &panel.mnuCancelTest,
        &panel.mnuShutDown, &panel.mnuHelp,        &panel.mnuInternet,    &panel.mnuAbout,
        &panel.mnuLog,      &panel.mnuDateAnalyse, &panel.mnuShutRec,     &panel.mnuEmail,
        &panel.Frame1,      &panel.mnuDateRecord}) {
    EXPECT_FALSE(entry->Text().empty());
  }
  for (std::size_t i : {0U, 1U, 2U, 3U, 4U, 5U, 6U, 7U}) {
    EXPECT_FALSE(panel.Label9[i].Caption().empty()) << i;
  }
}

TEST(CalendarTest, LeapYearsAndMonths) {
  for (const auto& [year, leap] : {std::pair{2000, true}, std::pair{2004, true},
                                   std::pair{1900, false}, std::pair{2001, false}}) {
    EXPECT_EQ(IsLeapYear(year), leap) << year;
  }
  const int kinds[] = {-1, 2, 0, 2, 1, 2, 1, 2, 2, 1, 2, 1, 2, -1};
  for (int month = 0; month <= 13; ++month) EXPECT_EQ(MonthKind(month), kinds[month]) << month;
}

TEST(CalendarTest, TextsAndWeekdays) {
  struct Case {
    LocalTime time;
    const char* date;
    const char* clock;
    int weekday;
  };
  for (const Case& row : {Case{{2001, 2, 16, 9, 5, 33}, "2001-02-16", "9:05:33", 5},
                          Case{{2000, 12, 31, 0, 0, 0}, "2000-12-31", "0:00:00", 7},
                          Case{{2026, 11, 23, 23, 59, 9}, "2026-11-23", "23:59:09", 1}}) {
    EXPECT_EQ(DateText(row.time), row.date);
    EXPECT_EQ(TimeText(row.time), row.clock);
    EXPECT_EQ(Weekday(row.time), row.weekday);
  }
}

}  // namespace
}  // namespace orvane::test
