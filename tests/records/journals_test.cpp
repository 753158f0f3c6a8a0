// The two journals, byte by byte.
#include <gtest/gtest.h>

#include "support/world.h"

namespace orvane::test {
namespace {

TEST(Journals, WriteTheLogByteByByte) {
  World world;
  world.time.SetWall({2001, 2, 16, 9, 5, 33});
  EXPECT_TRUE(world.journals.WriteLog("Program start"));
  world.time.SetWall({2001, 2, 16, 23, 59, 59});
  EXPECT_TRUE(world.journals.WriteLog("市电失效"));
  EXPECT_EQ(world.Log(),
            "\"\n2001-02-16 9:05:33 Program start\"\r\n"
            "\"\n2001-02-16 23:59:59 市电失效\"\r\n");
}

TEST(Journals, WriteADailyRecordOfTwentyBytes) {
  struct Case {
    LocalTime now;
    int code;
    const char* record;
  };
  const Case cases[] = {
      {{2001, 2, 16, 9, 40, 0}, kRecordAcFail, "\"\n2001-02-16 09 1\"\r\n"},
      {{2001, 12, 31, 23, 59, 59}, kRecordLowOrUpsFail, "\"\n2001-12-31 23 2\"\r\n"},
      {{2002, 1, 1, 0, 0, 0}, kRecordScheduleDown, "\"\n2002-01-01 00 0\"\r\n"},
  };
  World world;
  std::string file;
  for (const Case& c : cases) {
    world.time.SetWall(c.now);
    EXPECT_TRUE(world.journals.WriteDateRec(c.code));
    file += c.record;
    EXPECT_EQ(world.DateRec(), file);
    EXPECT_EQ(world.DateRec().size() % 20, 0U);
  }
}

TEST(Journals, LeaveTheFilesAloneWhenNothingCanBeWritten) {
  World world;
  world.journals.WriteLog("Program start");
  const std::string before = world.Log();
  world.disk.refuse_writes = true;
  EXPECT_FALSE(world.journals.WriteLog("Program end"));
  EXPECT_FALSE(world.journals.WriteDateRec(kRecordAcFail));
  EXPECT_EQ(world.Log(), before);
  EXPECT_FALSE(world.disk.Exists(world.journals.DateRecPath()));
}

}  // namespace
}  // namespace orvane::test
