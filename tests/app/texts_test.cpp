// Messages, captions and the calendar.
#include <gtest/gtest.h>

#include <cstdint>

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

// Blanks, marks and misspellings are easily lost, so the rows as they were read character by
// character have a fingerprint (32-bit FNV-1a, a NUL behind each number).
TEST(MessagesTest, EveryCharacterCounts) {
  std::uint32_t fingerprint = 2166136261U;
  for (int number = 1; number < 1122; ++number) {
    std::string row(LoadResString(number));
    row += '\0';
    for (const unsigned char byte : row) fingerprint = (fingerprint ^ byte) * 16777619U;
  }
  EXPECT_EQ(fingerprint, 0x0548F1C2U);
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
