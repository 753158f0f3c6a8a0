#include "protect/countdown.h"

#include <vector>

#include "app/settings.h"
#include "support/watched_ups.h"

namespace orvane::test {
namespace {

// Single ticks, with the captions put in place by hand.
TEST(Countdown, CaptionsDecideWhatATickTakes) {
  const struct {
    const char* mains;
    const char* battery;
    int before;
    int after;
    std::int16_t base = 0;
  } cases[] = {
      {"Fail", "Normal", 300, 299},
      {"Fail", "Low", 300, 120},
      {"Fail", "Low", 121, 120},
      {"Fail", "Low", 120, 119},
      {"Normal", "Low", 300, 300},
      {"", "", 300, 120},
      {"正 常", "正 常", 300, 120},
      {"失 效", "正 常", 300, 299, kChineseBase},
      {"失 效", "欠 压", 300, 120, kChineseBase},
      {"正 常", "欠 压", 300, 300, kChineseBase},
  };
  World world;
  State& state = world.state;
  Panel& panel = world.panel;
  Shutdown shutdown{state, panel, world.journals, world.seams};
  Countdown countdown{state, panel, shutdown, world.seams};
  state.Settings = {1, 10, 0, 2, 0, 2, 30, 1, 3, 0, 0};
  state.Main.AlertSeconds = 50;
  for (const auto& row : cases) {
    SCOPED_TRACE(std::string(row.mains) + ' ' + row.battery + ' ' + std::to_string(row.before));
    state.ResBase = row.base;
    state.ShutdownCountdown = row.before;
    panel.lblAc.Caption(row.mains);
    panel.lblBatt.Caption(row.battery);
    countdown.Timer2_Timer();
    const std::string left = std::to_string(row.after);
    EXPECT_EQ(panel.Label13.Caption(), row.base ? "警告：系统将在 " + left + " 秒后关闭！"
                                                : WatchedComputer::SecondsLeft(row.after));
  }
  EXPECT_FALSE(shutdown.Begun());
  // The 0 is acted on whatever the captions say.
  state.ShutdownCountdown = -5;
  countdown.Timer2_Timer();
  EXPECT_EQ(state.ShutdownCountdown, 0);
  EXPECT_TRUE(shutdown.Begun());
}

// A mains failure: the ticks that ask for the alert, and the one that ends the count.
TEST(Countdown, CoursesOfACount) {
  using Ints = std::vector<int>;
  const struct {
    const char* name;
    Slots slots;
    Ints alerts;
    int end;
    int low_at = 0;  // the tick that sees the battery low first; 0: none does
  } cases[] = {
      {"ten minutes", kTenMinutes, {481, 511, 541, 571}, 600},
      {"no delay, no settings", {0, 0, 0, 0, 0, 0}, {1}, 1},
      {"warning time 0", {1, 0, 0, 30, 0, 10}, {}, 60},
      {"warning time of the whole delay", {2, 0, 0, 30, 2, 50}, {1, 51, 101}, 120},
      {"warning time beyond the delay", {0, 50, 0, 30, 99, 20}, {1, 21, 41}, 50},
      {"period 0: once", {2, 0, 0, 30, 1, 0}, {61}, 120},
      {"alert due on the last tick", {0, 31, 0, 30, 1, 10}, {1, 11, 21, 31}, 31},
      {"delay beyond 16 bits", {546, 40, 0, 30, 9, 540}, {32261}, 32800},
      {"threshold below 16 bits", {0, 3, 999, 0, 32767, 2}, {1, 3}, 3},
      {"low battery shortens the count and hastens no alert", kTenMinutes, {}, 220, 100},
      {"low battery that lasts longer than the count", {1, 0, 2, 0, 0, 30}, {}, 60, 20},
      {"both faults from the first tick", kTenMinutes, {}, 121, 1},
      {"both, no battery delay", {10, 0, 0, 0, 0, 30}, {}, 50, 50},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.name);
    WatchedComputer computer;
    computer.Start(row.slots);
    computer.NextReply(kMainsFailed);
    Ints asked;
    int tick = 0;
    while (!computer.Down() && tick < row.end + 5) {
      const int before = computer.alerts;
      if (++tick == row.low_at) {
        computer.status.bits = kMainsFailedBatteryLow;
        computer.MSComm1.Receive(computer.status.Text());
      }
      computer.Ticks(1);
      if (computer.alerts > before) asked.push_back(tick);
      if (row.low_at == 0) {
        ASSERT_EQ(computer.state.ShutdownCountdown, std::max(row.end - tick, 0)) << tick;
      }
    }
    EXPECT_EQ(asked, row.alerts);
    EXPECT_TRUE(computer.Down());
    EXPECT_EQ(tick, row.end);
    EXPECT_FALSE(computer.alert_open);
  }
}

class CountdownTest : public WatchedUps {};

TEST_F(CountdownTest, MainsBackCancelsAndTheNextFailureStartsAfresh) {
  Start({1, 0, 0, 30, 1, 20});
  NextReply(kMainsFailed);
  Ticks(8);
  EXPECT_TRUE(alert_open);
  // Two timers: the alert may be a second behind.
  EXPECT_NEAR(std::stoi(form.Alert().lblSecond.Caption()), 52.5, 0.5);
  form.Alert().Command1_Click();
  Ticks(12);
  EXPECT_FALSE(alert_open);
  Ticks(1);
  EXPECT_TRUE(alert_open);
  EXPECT_EQ(form.Alert().lblSecond.Caption(), "39");
  NextReply(kAllWell);
  EXPECT_EQ(Status(), "Ready");
  Seconds(1);
  EXPECT_FALSE(alert_open);
  Seconds(600);
  EXPECT_FALSE(Down());
  NextReply(kMainsFailed);
  Ticks(1);
  EXPECT_EQ(Status(), SecondsLeft(59));
  EXPECT_TRUE(alert_open);
  Ticks(59);
  EXPECT_TRUE(Down());
}

TEST_F(CountdownTest, FaultsAloneTakeTheComputerDownOnlyWithoutADelay) {
  for (const char* fault : {kBatteryLowAlone, kUpsFailedAlone}) {
    for (const int delay : {10, 0}) {
      SCOPED_TRACE(fault + std::to_string(delay));
      WatchedComputer computer;
      computer.Start({delay, 0, 2, 0, delay, 30});
      computer.NextReply(fault);
      computer.Ticks(1);
      EXPECT_EQ(computer.Down(), delay == 0);
      EXPECT_EQ(computer.alerts, 1);
      EXPECT_EQ(computer.alert_open, delay != 0);
      // The alert sees the mains normal and closes itself.
      computer.Seconds(1);
      EXPECT_FALSE(computer.alert_open);
      computer.Seconds(700);
      EXPECT_EQ(computer.Down(), delay == 0);
      EXPECT_EQ(computer.state.ShutdownCountdown, delay * 60);
    }
  }
}

}  // namespace
}  // namespace orvane::test
