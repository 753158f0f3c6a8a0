#include "simulate/ups_model.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace orvane::test {
namespace {

using namespace std::chrono_literals;

class UpsModelTest : public testing::Test {
 protected:
  UpsModelTest() { AddUpsOrders(orders_, ups); }

  // What the UPS says at once to a command.
  std::string Ask(const std::string& command) {
    ups.Receive(command + "\r");
    return ups.Take();
  }

  // Plays a life: ">T" is a command, "+9.5" seconds that pass, "=01000001" the bits that the UPS
  // answers with ("=": it is silent), everything else an order.
  void Play(std::initializer_list<std::string> steps) {
    int number = 0;
    for (const std::string& step : steps) {
      SCOPED_TRACE(std::to_string(number++) + ": " + step);
      const std::string rest = step.substr(1);
      if (step[0] == '>') {
        EXPECT_EQ(Ask(rest), "");
      } else if (step[0] == '+') {
        now_ += std::chrono::round<Moment>(std::chrono::duration<double>(std::stod(rest)));
        ups.Advance(now_);
      } else if (step[0] == '=') {
        const std::string reply = Ask("Q1");
        EXPECT_EQ(reply.size() == 47 ? reply.substr(38, 8) : reply, rest);
      } else {
        EXPECT_EQ(orders_.Run(step), "");
      }
    }
  }

  UpsModel ups;

 private:
  OrderTable orders_;
  Moment now_{0};
};

TEST_F(UpsModelTest, StatusReplyHoldsEveryOrderInItsColumns) {
  const struct {
    std::initializer_list<std::string> orders;
    const char* reply;
  } cases[] = {
      {{}, "(230.0 230.0 230.0 035 50.0 2.27 25.0 00000001\r"},
      {{"input 198.25", "output 110", "load 110", "frequency 60.04", "battery 50"},
       "(198.2 230.0 110.0 110 60.0 2.00 25.0 00000001\r"},
      {{"input 7", "load 7", "frequency 5.5", "battery 20.1", "temperature -0.01"},
       "(007.0 230.0 110.0 007 05.5 1.83 00.0 00000001\r"},
      {{"mains off", "battery 20", "bypass on"},
       "(000.0 007.0 000.0 007 05.5 1.83 00.0 11100001\r"},
      {{"mains on", "fault on", "battery 0", "temperature -9.5"},
       "(007.0 007.0 007.0 007 05.5 1.72 -9.5 01110001\r"},
  };
  for (const auto& row : cases) {
    Play(row.orders);
    EXPECT_EQ(Ask("Q1"), row.reply);
  }
}

TEST_F(UpsModelTest, CommandsInAnyPiecesUnknownOnesIgnored) {
  const std::string status = ups.StatusReply();
  const std::string information = Ask("MD");
  // The other shape of reply.
  EXPECT_NE(information.front(), '(');
  EXPECT_EQ(information.find('\r'), information.size() - 1);
  EXPECT_EQ(std::count(information.begin(), information.end(), ','), 8);
  for (const char* piece : {"Q", "1", "\rM", "D\rQ1\r"}) ups.Receive(piece);
  EXPECT_EQ(ups.Take(), status + information + status);
  for (const char* command : {"", "q1", "Q1 ", "TX", "S", "S.4", "S.55", "S00", "S11", "CQ"}) {
    EXPECT_EQ(Ask(command), "") << command;
  }
  EXPECT_EQ(Ask("Q1"), status);
  Play({">Q", "=00000000", ">Q", "=00000001"});  // the beeper
}

TEST_F(UpsModelTest, BatteryDrainsLowThenEmptyAndTheMainsBringItBack) {
  Play({"load 100", "mains off", "+383", "=10000001", "+2", "=11000001", "+95", "=", ">C", "=",
        "mains on", "+4440", "=01000001", "+60.001", "=00000001"});
}

TEST_F(UpsModelTest, SelfTestRunsTenSecondsOrUntilTheBatteryIsLow) {
  Play({">T", "+9.999", "=00000101", "+0.001", "=00000001"});
  Play({"load 100", "battery 100", ">TL", "+360", "=00000101", "+25", "=01000001"});
  Play({"battery 100", ">TL", "=00000101", ">CT", "=00000001"});
  Play({">T", "mains off", "=10000001", ">T", "=10000001"});
}

TEST_F(UpsModelTest, ShutdownComesAfterItsDelayAndTheMainsEndIt) {
  // A failure before the shutdown does not count, and mains that stays does not either.
  Play({">S.5", "mains off", "mains on", "+29.999", "=00000011", "+0.001", "=", ">MD", "+3600",
        "mains on", "=", "mains off", "=", "mains on", "=00000001"});
  Play({"mains off", ">S10", "+599", "=10000011", "+1", "=", "mains on", "=00000001"});
  // The switch-on word cancels it and undoes it; a new delay takes the old one's place.
  Play({">S.5", "+29", ">C", "+3600", "=00000001"});
  Play({">S.5", ">S01", "+59", "=00000011", "+1", "=", ">C", "=00000001"});
}

}  // namespace
}  // namespace orvane::test
