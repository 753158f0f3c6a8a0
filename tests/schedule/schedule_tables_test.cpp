#include "schedule/schedule_tables.h"

#include <gtest/gtest.h>

#include "support/world.h"

namespace orvane::test {
namespace {

const std::string kPath = "/prog/systimer.ini";

TEST(ScheduleTables, EverySlotHoldsItsEntry) {
  World world;
  std::string file;
  for (const char* section : {"weekly", "Special", "SelfTestToLow"}) {
    file += std::string("[") + section + "]\n";
    for (int n = 1; n <= 7; ++n) {
      const std::string number = std::to_string(n);
      file += number + "Enable=" + (n % 2 ? "1" : "0") + "\n";
      for (const char* suffix : {"On", "Off", "Date"}) {
        file += number + suffix + "=" + section + number + suffix + "\n";
      }
    }
  }
  world.disk.files[kPath] = file;
  LoadSchedule(world.disk, SchedulePath("/prog"), world.state);
  const State& state = world.state;
  for (std::size_t n = 1; n <= 7; ++n) {
    SCOPED_TRACE(n);
    const std::string number = std::to_string(n);
    const char enable = n % 2 ? '1' : '0';
    EXPECT_EQ(state.ScheduleEnable[n], enable);
    EXPECT_EQ(state.ScheduleEnable[n + 7], enable);
    EXPECT_EQ(state.ScheduleEnable[n + 14], enable);
    EXPECT_EQ(state.ScheduleOn[n], "weekly" + number + "On");
    EXPECT_EQ(state.ScheduleOn[n + 7], "Special" + number + "On");
    EXPECT_EQ(state.ScheduleOn[n + 14], "SelfTestToLow" + number + "On");
    EXPECT_EQ(state.ScheduleOff[n], "weekly" + number + "Off");
    EXPECT_EQ(state.ScheduleOff[n + 7], "Special" + number + "Off");
    EXPECT_EQ(state.ScheduleDate[n], "Special" + number + "Date");
    EXPECT_EQ(state.ScheduleDate[n + 7], "SelfTestToLow" + number + "Date");
  }
  EXPECT_EQ(world.disk.replacements, 0);
}

TEST(ScheduleTables, AbsentFileLeavesThemBlankAndIsNotMade) {
  World world;
  LoadSchedule(world.disk, kPath, world.state);
  for (std::size_t slot = 1; slot <= 21; ++slot) {
    EXPECT_EQ(world.state.ScheduleEnable[slot], ' ');
    EXPECT_EQ(world.state.ScheduleOn[slot], "");
  }
  EXPECT_TRUE(world.disk.files.empty());
}

TEST(ScheduleTables, OddTextsAreTakenAsTheyRead) {
  World world;
  world.disk.files[kPath] =
      "[WEEKLY]\r1enable = 10\r2ENABLE=01\r3Enable=\" 1\"\r1on=" + std::string(1023, '8') +
      "日\r[special]\r1DATE=2001-5-1\r";
  LoadSchedule(world.disk, kPath, world.state);
  EXPECT_EQ(world.state.ScheduleEnable[1], '1');
  EXPECT_EQ(world.state.ScheduleEnable[2], '0');
  EXPECT_EQ(world.state.ScheduleEnable[3], ' ');
  EXPECT_EQ(world.state.ScheduleOn[1], std::string(1023, '8'));
  EXPECT_EQ(world.state.ScheduleDate[1], "2001-5-1");
}

}  // namespace
}  // namespace orvane::test
