// The count to shutdown on a computer whose clock is set, or which is held up altogether.
#include "protect/watched_ups.h"

namespace orvane::test {
namespace {

using namespace std::chrono_literals;

constexpr Slots kOneMinute{1, 0, 0, 20, 0, 30};

class ClockFaultsTest : public WatchedUps {};

struct ClockCase {
  const char* name;
  LocalTime to;
};

TEST(ClockFaults, ClockOnTheWallHasNoPartInTheCount) {
  for (const ClockCase& c : {ClockCase{"an hour on, as in spring", {2001, 2, 16, 10, 6, 0}},
                             {"an hour back, as in autumn", {2001, 2, 16, 8, 6, 0}},
                             {"years on", {2038, 1, 19, 3, 14, 8}},
                             {"years back", {1970, 1, 1, 0, 0, 0}}}) {
    SCOPED_TRACE(c.name);
    WatchedComputer computer;
    computer.Start(kOneMinute);
    computer.NextReply(kAllWell);
    computer.NextReply(kMainsFailed);
    computer.Ticks(30);
    computer.time.SetWall(c.to);
    EXPECT_EQ(computer.Status(), WatchedComputer::SecondsLeft(30));
    computer.Ticks(29);
    EXPECT_EQ(computer.Status(), WatchedComputer::SecondsLeft(1));
    EXPECT_FALSE(computer.Down());
    computer.Seconds(1);
    EXPECT_TRUE(computer.Down());
    EXPECT_EQ(computer.panel.lblConnect.Caption(), "Conn");
  }
}

// A computer that slept through half a night finds everything due at once, and each of it once.
TEST_F(ClockFaultsTest, SleepCostsOneTick) {
  Start(kOneMinute);
  NextReply(kAllWell);
  NextReply(kMainsFailed);
  Ticks(20);
  const auto polls = MSComm1.sent.size();
  time.Jump(4h);
  time.Advance(0ms);
  EXPECT_EQ(Status(), SecondsLeft(39));
  EXPECT_EQ(MSComm1.sent.size(), polls + 1);
  EXPECT_EQ(panel.lblConnect.Caption(), "Conn");
  Seconds(38);
  EXPECT_FALSE(Down());
  Seconds(1);
  EXPECT_TRUE(Down());
}

}  // namespace
}  // namespace orvane::test
