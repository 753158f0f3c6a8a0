#include "schedule/schedule_engine.h"

#include <gtest/gtest.h>

#include "protect/shutdown.h"
#include "schedule/schedule_tables.h"
#include "support/world.h"

namespace orvane::test {
namespace {

// Friday, 2001-02-16, nine o'clock.
constexpr LocalTime kFridayNine{2001, 2, 16, 9, 0, 0};
constexpr std::chrono::minutes kMinute{1};

class ScheduleEngineTest : public testing::Test, public World {
 protected:
  ScheduleEngineTest() {
    ups_port.Open();
    state.ShutdownCommand = "S.5";
    schedule_timer.Tick = [this] { engine.OnSchedule(); };
    schedule_timer.Interval(5000);
    schedule_timer.Enabled(true);
    time.SetWall(kFridayNine);
  }

  void Entry(const ScheduleSection& section, std::size_t n, const ScheduleEntry& entry) {
    entries[section.on_slots / 7][n - 1] = entry;
    StoreSchedule(section, entries[section.on_slots / 7], state);
  }

  std::size_t Lines(const std::string& message) const {
    const std::string log = Log();
    std::size_t count = 0;
    for (std::size_t at = 0; (at = log.find(' ' + message + '"', at)) != std::string::npos; ++at) {
      ++count;
    }
    return count;
  }

  // One tick at `now`; what went out on the wire.
  std::string TickAt(const LocalTime& now) {
    ups_port.sent.clear();
    time.SetWall(now);
    engine.OnSchedule();
    return ups_port.Wire();
  }

  std::array<ScheduleEntries, 3> entries;
  Shutdown shutdown{state, panel, journals, seams};
  ScheduleEngine engine{state, journals, shutdown, seams};
};

TEST_F(ScheduleEngineTest, EachPassMatchesItsOwnDayAndMinute) {
  const ScheduleEntry at830{"1", "08:30", "18:00", "2001-5-1"};
  const LocalTime tuesday830{2001, 5, 1, 8, 30, 0};
  const LocalTime year_later{2002, 5, 1, 8, 30, 0};
  const struct {
    const char* name;
    ScheduleSection section;
    std::size_t entry;
    ScheduleEntry texts;
    LocalTime now;
    const char* wire;
  } cases[] = {
      {"week, last second", kWeekly, 2, at830, {2001, 5, 1, 8, 30, 59}, "C\r"},
      {"week, before", kWeekly, 2, at830, {2001, 5, 1, 8, 29, 59}, ""},
      {"week, after", kWeekly, 2, at830, {2001, 5, 1, 8, 31, 0}, ""},
      {"week, the day before", kWeekly, 2, at830, {2001, 4, 30, 8, 30, 0}, ""},
      {"week, a year later", kWeekly, 3, at830, year_later, "C\r"},
      {"Monday is the first", kWeekly, 1, at830, {2001, 4, 30, 8, 30, 0}, "C\r"},
      {"Sunday is the seventh", kWeekly, 7, at830, {2001, 5, 6, 8, 30, 0}, "C\r"},
      {"week, not in use", kWeekly, 2, {"0", "8:30", "", ""}, tuesday830, ""},
      {"week, blank enable", kWeekly, 2, {"", "8:30", "", ""}, tuesday830, ""},
      {"week, enable of two characters", kWeekly, 2, {"10", "8:30", "", ""}, tuesday830, "C\r"},
      {"week, no readable time", kWeekly, 2, {"1", "8:60", "", ""}, tuesday830, ""},
      {"special day", kSpecialDays, 7, at830, tuesday830, "C\r"},
      {"special day, another year", kSpecialDays, 7, at830, year_later, ""},
      {"special day, no date", kSpecialDays, 1, {"1", "8:30", "", ""}, tuesday830, ""},
      {"special day, not in use", kSpecialDays, 1, {"0", "8:30", "", "2001-5-1"}, tuesday830, ""},
      {"self-test", kSelfTests, 1, at830, tuesday830, "TL\r"},
      {"self-test, the last", kSelfTests, 7, at830, tuesday830, "TL\r"},
      {"self-test, another year", kSelfTests, 1, at830, year_later, ""},
      {"self-test, not in use", kSelfTests, 1, {"0", "8:30", "", "2001-5-1"}, tuesday830, ""},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.name);
    for (const ScheduleSection& section : {kWeekly, kSpecialDays, kSelfTests}) {
      entries[section.on_slots / 7] = {};
      StoreSchedule(section, {}, state);
    }
    Entry(row.section, row.entry, row.texts);
    EXPECT_EQ(TickAt(row.now), row.wire);
  }
}

TEST_F(ScheduleEngineTest, AllThreeActInOrderOnOneTick) {
  state.language = Language::kChinese;
  Entry(kWeekly, 5, {"1", "", "9:00", ""});
  Entry(kSpecialDays, 1, {"1", "9:00", "", "2001/2/16"});
  Entry(kSelfTests, 1, {"1", "9:00", "", "2001-02-16"});
  std::vector<std::string> order;
  ups_port.OnSent = [&](const std::string& text) {
    order.push_back(text + (Lines("定时开机的时间到了") ? " on" : "") +
                    (Lines("定时关机的时间到了") ? " off" : ""));
  };
  engine.OnSchedule();
  EXPECT_EQ(order, (std::vector<std::string>{"TL\r", "C\r on", "S.5\r on off"}));
}

TEST_F(ScheduleEngineTest, ClosedPortAndFullDiskStopNothing) {
  ups_port.Close();
  Entry(kSelfTests, 1, {"1", "9:00", "", "2001-02-16"});
  Entry(kWeekly, 5, {"1", "9:00", "", ""});
  EXPECT_EQ(TickAt(kFridayNine), "");
  EXPECT_EQ(Lines("It's time startup ups"), 1u);
  EXPECT_EQ(host.reports.size(), 2u);

  disk.refuse_writes = true;
  Entry(kWeekly, 5, {"1", "9:00", "9:00", ""});
  ups_port.Open();
  EXPECT_EQ(TickAt(kFridayNine), "TL\rC\rS.5\r");
  EXPECT_EQ(events.back(), "TakeDown");
}

TEST_F(ScheduleEngineTest, OnlyTheClockOnTheWallCounts) {
  Entry(kWeekly, 5, {"1", "9:30", "", ""});
  // Put forward over the minute: it is lost. Put back: it acts again.
  time.SetWall({2001, 2, 16, 9, 31, 0});
  time.Advance(kMinute);
  EXPECT_EQ(ups_port.Wire(), "");
  for (const std::size_t ticks : {12u, 24u}) {
    time.SetWall({2001, 2, 16, 9, 29, 58});
    time.Advance(kMinute * 2);
    EXPECT_EQ(ups_port.sent.size(), ticks);
  }
}

}  // namespace
}  // namespace orvane::test
