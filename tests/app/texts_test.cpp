// Messages, captions and the calendar.
#include <gtest/gtest.h>

#include <cstdint>

#include "app/calendar.h"
#include "app/captions.h"
#include "app/messages.h"

namespace orvane::test {
namespace {

// Blanks, marks and misspellings are easily lost, so the rows as they were read character by
// character have a fingerprint (32-bit FNV-1a, a NUL behind each number).
TEST(MessagesTest, EveryCharacterCountsAndNoOtherNumberHasARow) {
  std::uint32_t fingerprint = 2166136261U;
  for (int number = -5; number < 2000; ++number) {
    std::string row(LoadResString(number));
    if (number < 1 || number >= 1122) {
      EXPECT_EQ(row, "") << number;
      continue;
    }
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
  EXPECT_EQ(panel.mnuDateAnalyse.Text(), "A&Nalysis");
  EXPECT_EQ(panel.mnuDateRecord.Text(), "Event &Day");
  EXPECT_EQ(panel.Label9[4].Caption(), "Load(%)");
  EXPECT_EQ(panel.Label9[1].Caption(), "(V)");
  EXPECT_EQ(panel.Label9[3].Caption(), "(V)");
  EXPECT_EQ(panel.lblApcCap[4].Caption(), "Temp.");
  EXPECT_EQ(panel.lblApcCap[5].Caption(), "Freq.");
  EXPECT_EQ(panel.Label1[0].Caption(), "Batt Num:");
  EXPECT_EQ(panel.Label1[5].Caption(), "Batt Volt:");
  EXPECT_EQ(changes, 1);

  panel.lblConnect.Caption("Conn");
  state.ResBase = kChineseBase;
  SetCaptions(state, panel);
  EXPECT_EQ(panel.mnuSystem.Text(), "系统(&S)");
  EXPECT_EQ(panel.lblConnect.Caption(), "未连接");
  EXPECT_EQ(panel.lblAc.Caption(), "Fail");
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
