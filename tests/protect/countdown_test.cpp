#include "protect/countdown.h"

#include <vector>

#include "app/settings.h"
#include "support/watched_ups.h"

namespace orvane::test {
namespace {

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
      const auto before = computer.Count("Show alert");
      if (++tick == row.low_at) {
        computer.status.bits = kMainsFailedBatteryLow;
        computer.ups_port.Receive(computer.status.Text());
      }
      computer.Ticks(1);
      if (computer.Count("Show alert") > before) asked.push_back(tick);
      if (row.low_at == 0) {
        ASSERT_EQ(computer.state.ShutdownCountdown, std::max(row.end - tick, 0)) << tick;
      }
    }
    EXPECT_EQ(asked, row.alerts);
    EXPECT_TRUE(computer.Down());
    EXPECT_EQ(tick, row.end);
    EXPECT_FALSE(computer.AlertOpen());
  }
}

class CountdownTest : public WatchedUps {};

TEST_F(CountdownTest, MainsBackCancelsAndTheNextFailureStartsAfresh) {
  Start({1, 0, 0, 30, 1, 20});
  NextReply(kMainsFailed);
  Ticks(8);
  EXPECT_TRUE(AlertOpen());
  // Two timers: the alert may be a second behind.
  EXPECT_NEAR(std::stoi(form.Alert().seconds.Caption()), 52.5, 0.5);
  form.Alert().Close();
  Ticks(12);
  EXPECT_FALSE(AlertOpen());
  Ticks(1);
  EXPECT_TRUE(AlertOpen());
  EXPECT_EQ(form.Alert().seconds.Caption(), "39");
  NextReply(kAllWell);
  EXPECT_EQ(Status(), "Ready");
  Seconds(1);
  EXPECT_FALSE(AlertOpen());
  Seconds(600);
  EXPECT_FALSE(Down());
  NextReply(kMainsFailed);
  Ticks(1);
  EXPECT_EQ(Status(), SecondsLeft(59));
  EXPECT_TRUE(AlertOpen());
  Ticks(59);
  EXPECT_TRUE(Down());
}

}  // namespace
}  // namespace orvane::test
