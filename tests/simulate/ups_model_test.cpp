#include "simulate/ups_model.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace orvane::test {
namespace {

using namespace std::chrono_literals;

class UpsModelTest : public testing::Test {
 protected:
  UpsModelTest() {
    ups.OnTrace = [this](Trace trace, std::string_view text) {
      if (trace == Trace::kEvent) events.emplace_back(text);
    };
  }

  // What the UPS says at once to a command.
  std::string Ask(const std::string& command) {
    ups.Receive(command + "\r");
    return ups.Take();
  }
  bool Answers() { return !Ask("Q1").empty(); }

  // Columns of the status reply, counted from 1.
  std::string Columns(std::size_t first, std::size_t width) {
    return ups.StatusReply().substr(first - 1, width);
  }
  std::string Bits() { return Columns(39, 8); }

  void Pass(Moment time) { ups.Advance(now += time); }

  UpsModel ups;
  Moment now{0};
  std::vector<std::string> events;
};

TEST_F(UpsModelTest, StatusReplyHoldsEveryValueInItsColumns) {
  EXPECT_EQ(Ask("Q1"), "(230.0 230.0 230.0 035 50.0 2.27 25.0 00000001\r");
  struct Case {
    const char* name;
    void (UpsModel::*set)(double);
    double value;
    std::size_t first, width;
    const char* field;
  };
  const Case cases[] = {
      {"input", &UpsModel::MainsVoltage, 198.25, 2, 5, "198.2"},
      {"input, small", &UpsModel::MainsVoltage, 7, 2, 5, "007.0"},
      {"input, beyond", &UpsModel::MainsVoltage, 12345, 2, 5, "999.9"},
      {"output", &UpsModel::OutputVoltage, 110, 14, 5, "110.0"},
      {"load", &UpsModel::Load, 110, 20, 3, "110"},
      {"load, small", &UpsModel::Load, 7, 20, 3, "007"},
      {"load, beyond", &UpsModel::Load, 2000, 20, 3, "999"},
      {"frequency", &UpsModel::Frequency, 60.04, 24, 4, "60.0"},
      {"frequency, small", &UpsModel::Frequency, 5.5, 24, 4, "05.5"},
      {"battery full", &UpsModel::Battery, 100, 29, 4, "2.27"},
      {"battery half", &UpsModel::Battery, 50, 29, 4, "2.00"},
      {"battery low", &UpsModel::Battery, 20, 29, 4, "1.83"},
      {"battery empty", &UpsModel::Battery, 0, 29, 4, "1.72"},
      {"battery, beyond", &UpsModel::Battery, 300, 29, 4, "2.27"},
      {"temperature", &UpsModel::Temperature, 40, 34, 4, "40.0"},
      {"temperature, frost", &UpsModel::Temperature, -9.5, 34, 4, "-9.5"},
      {"temperature, hard frost", &UpsModel::Temperature, -40, 34, 4, "-9.9"},
      {"temperature, just under nought", &UpsModel::Temperature, -0.01, 34, 4, "00.0"},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.name);
    (ups.*row.set)(row.value);
    EXPECT_EQ(Columns(row.first, row.width), row.field);
    EXPECT_EQ(ups.StatusReply().size(), 47U);
  }
}

TEST_F(UpsModelTest, BitsTellTheState) {
  EXPECT_EQ(Bits(), "00000001");
  ups.Mains(false);
  EXPECT_EQ(Bits(), "10000001");
  EXPECT_EQ(Columns(2, 5), "000.0");
  EXPECT_EQ(Columns(14, 5), "230.0");
  ups.Battery(20);
  EXPECT_EQ(Bits(), "11000001");
  ups.Bypass(true);
  EXPECT_EQ(Bits(), "11100001");
  EXPECT_EQ(Columns(14, 5), "000.0");
  ups.Fault(true);
  EXPECT_EQ(Bits(), "11110001");
  ups.Mains(true);
  ups.Bypass(false);
  ups.Fault(false);
  ups.Battery(20.1);
  EXPECT_EQ(Bits(), "00000001");
}

TEST_F(UpsModelTest, InformationReplyIsTheOtherShape) {
  const std::string reply = Ask("MD");
  EXPECT_GE(reply.size(), 30U);
  EXPECT_EQ(std::count(reply.begin(), reply.end(), ','), 8);
  EXPECT_EQ(reply.find('\r'), reply.size() - 1);
  EXPECT_NE(reply.front(), '(');
}

TEST_F(UpsModelTest, CommandsInAnyPiecesUnknownOnesIgnored) {
  for (const char* piece : {"Q", "1", "\rM", "D\rQ1\r"}) ups.Receive(piece);
  const std::string status = ups.StatusReply();
  EXPECT_EQ(ups.Take(), status + UpsModel::InformationReply() + status);

  for (const std::string command : {"", "q1", "Q1 ", "Q2", "\nQ1", "TX", "S", "S.4", "S.55", "S00",
                                    "S11", "S1", "S+1", "S 1", "S010", "CQ"}) {
    SCOPED_TRACE(command);
    EXPECT_EQ(Ask(command), "");
  }
  EXPECT_EQ(Ask(std::string(100'000, 'Q') + "1"), "");
  EXPECT_EQ(events, std::vector<std::string>{});
  EXPECT_EQ(Ask("Q1"), status);
}

TEST_F(UpsModelTest, BatteryDrainsLowThenEmptyAndTheUpsFallsSilent) {
  ups.Load(100);
  ups.Mains(false);
  Pass(4min);
  EXPECT_NEAR(ups.BatteryPercent(), 50, 0.1);
  Pass(2min + 23s);
  EXPECT_FALSE(ups.BatteryLow());
  Pass(2s);
  EXPECT_TRUE(ups.BatteryLow());
  EXPECT_TRUE(Answers());
  Pass(95s);
  EXPECT_FALSE(ups.OutputOn());
  EXPECT_FALSE(Answers());
  EXPECT_EQ(events, (std::vector<std::string>{"battery low", "output off: battery empty"}));
  // Nothing but the mains brings it back.
  EXPECT_EQ(Ask("C"), "");
  EXPECT_FALSE(ups.OutputOn());
  ups.Mains(true);
  EXPECT_TRUE(Answers());
  EXPECT_TRUE(ups.BatteryLow());
  Pass(74min);
  EXPECT_TRUE(ups.BatteryLow());
  Pass(1min + 1ms);
  EXPECT_FALSE(ups.BatteryLow());
  Pass(4h);
  EXPECT_EQ(ups.BatteryPercent(), 100);
}

TEST_F(UpsModelTest, ALighterLoadLastsMoreThanInProportion) {
  ups.Load(50);
  ups.Mains(false);
  Pass(16min);
  EXPECT_GT(ups.BatteryPercent(), 5);
  // Not for ever, even without a load.
  ups.Load(0);
  Pass(24h);
  EXPECT_FALSE(ups.OutputOn());
}

TEST_F(UpsModelTest, TheWayOfTimeDoesNotMatter) {
  UpsModel leap;
  for (UpsModel* model : {&ups, &leap}) {
    model->Load(70);
    model->Receive("TL\rS10\r");
  }
  while (now < 11min) Pass(77ms);
  leap.Advance(now);
  EXPECT_NEAR(leap.BatteryPercent(), ups.BatteryPercent(), 0.01);
  EXPECT_FALSE(leap.OutputOn());
  EXPECT_FALSE(ups.OutputOn());
  leap.Advance(0ms);  // the past changes nothing
  EXPECT_NEAR(leap.BatteryPercent(), ups.BatteryPercent(), 0.01);
}

TEST_F(UpsModelTest, ShortSelfTestRunsTenSeconds) {
  Ask("T");
  EXPECT_EQ(Bits(), "00000101");
  Pass(9999ms);
  EXPECT_TRUE(ups.Testing());
  EXPECT_LT(ups.BatteryPercent(), 100);
  EXPECT_EQ(ups.Next(), 10s);
  Pass(1ms);
  EXPECT_FALSE(ups.Testing());
  EXPECT_EQ(events, (std::vector<std::string>{"self-test of 10 s begins", "self-test over"}));
}

TEST_F(UpsModelTest, LongSelfTestRunsUntilTheBatteryIsLow) {
  ups.Load(100);
  Ask("TL");
  Pass(6min);
  EXPECT_TRUE(ups.Testing());
  EXPECT_EQ(Bits(), "00000101");
  Pass(25s);
  EXPECT_FALSE(ups.Testing());
  EXPECT_EQ(Bits(), "01000001");
  EXPECT_NEAR(ups.BatteryPercent(), 20, 0.1);
}

TEST_F(UpsModelTest, WhatEndsOrPreventsASelfTest) {
  for (const std::string test : {"T", "TL"}) {
    SCOPED_TRACE(test);
    ups.Battery(100);
    Ask(test);
    EXPECT_TRUE(ups.Testing());
    Ask("CT");
    EXPECT_FALSE(ups.Testing());
    Ask(test);
    ups.Mains(false);
    EXPECT_FALSE(ups.Testing());
    Ask(test);
    EXPECT_FALSE(ups.Testing());
    ups.Mains(true);
    ups.Bypass(true);
    Ask(test);
    EXPECT_FALSE(ups.Testing());
    ups.Bypass(false);
  }
  ups.Battery(10);
  Ask("TL");
  EXPECT_FALSE(ups.Testing());
}

TEST_F(UpsModelTest, BeeperTogglesWithEveryQ) {
  Ask("Q");
  EXPECT_FALSE(ups.Beeper());
  EXPECT_EQ(Bits(), "00000000");
  Ask("Q");
  EXPECT_TRUE(ups.Beeper());
}

TEST_F(UpsModelTest, ShutdownComesAfterItsDelay) {
  const struct {
    const char* command;
    Moment delay;
  } cases[] = {{"S.5", 30s}, {"S01", 60s}, {"S09", 540s}, {"S10", 600s}};
  for (const auto& row : cases) {
    SCOPED_TRACE(row.command);
    EXPECT_EQ(Ask(row.command), "");
    EXPECT_EQ(Bits(), "00000011");
    Pass(row.delay - 1ms);
    EXPECT_TRUE(Answers());
    Pass(1ms);
    EXPECT_FALSE(Answers());
    EXPECT_EQ(Ask("MD"), "");
    // The mains is there all the time: it stays off until it has been away.
    Pass(1h);
    ups.Mains(true);
    EXPECT_FALSE(Answers());
    ups.Mains(false);
    EXPECT_FALSE(Answers());
    ups.Mains(true);
    EXPECT_TRUE(Answers());
    EXPECT_EQ(Bits(), "00000001");
  }
}

TEST_F(UpsModelTest, ShutdownDuringAMainsFailure) {
  ups.Mains(false);
  Ask("S.5");
  Pass(30s);
  EXPECT_FALSE(ups.OutputOn());
  const double level = ups.BatteryPercent();
  Pass(1h);
  EXPECT_EQ(ups.BatteryPercent(), level);
  ups.Mains(true);
  EXPECT_TRUE(Answers());
}

TEST_F(UpsModelTest, AMainsFailureBeforeTheShutdownDoesNotCount) {
  Ask("S01");
  ups.Mains(false);
  ups.Mains(true);
  Pass(1min);
  EXPECT_FALSE(ups.OutputOn());
}

TEST_F(UpsModelTest, SwitchOnWordCancelsAndSwitchesOn) {
  Ask("S.5");
  Pass(29s);
  EXPECT_EQ(Ask("C"), "");
  EXPECT_EQ(ups.ShutdownDue(), std::nullopt);
  Pass(1h);
  EXPECT_TRUE(Answers());

  Ask("S.5");
  Pass(10s);
  Ask("S01");  // the new delay takes the old one's place
  Pass(59s);
  EXPECT_TRUE(Answers());
  Pass(1s);
  EXPECT_FALSE(Answers());
  Ask("C");
  EXPECT_TRUE(Answers());
}

TEST_F(UpsModelTest, MuteHearsButDoesNotAnswer) {
  ups.Split(true);
  ups.Receive("Q1\r");
  ups.Mute(true);
  Pass(10s);
  EXPECT_EQ(ups.Take(), "");  // not even the rest
  EXPECT_EQ(Ask("Q1"), "");
  Ask("Q");
  EXPECT_FALSE(ups.Beeper());
  ups.Mute(false);
  ups.Split(false);
  EXPECT_TRUE(Answers());
}

TEST_F(UpsModelTest, SplitRepliesComeInPiecesWithPauses) {
  ups.Split(true);
  const std::string whole = ups.StatusReply();
  std::vector<std::string> pieces{Ask("Q1")};
  Moment last = 0ms;
  while (const auto next = ups.Next()) {
    EXPECT_EQ(*next - last, UpsModel::kSplitPause);
    last = *next;
    Pass(last - now - 1ms);
    EXPECT_EQ(ups.Take(), "");
    Pass(1ms);
    pieces.push_back(ups.Take());
  }
  EXPECT_EQ(pieces.size(), 5U);
  EXPECT_EQ(pieces.back().size(), 1U);
  EXPECT_LT(last, 1s);
  std::string text;
  for (const std::string& piece : pieces) text += piece;
  EXPECT_EQ(text, whole);
}

TEST_F(UpsModelTest, NoiseSpoilsTwoRepliesOfThreeAndNeverWithDigits) {
  ups.Noise(true);
  const std::string whole = ups.StatusReply();
  const auto digits = [](std::string text) {
    std::erase_if(text, [](char c) { return c < '0' || c > '9'; });
    return text;
  };
  for (int round = 0; round < 50; ++round) {
    const std::string in_front = Ask("Q1"), among = Ask("Q1"), clean = Ask("Q1");
    EXPECT_GT(in_front.size(), whole.size());
    EXPECT_NE(in_front.front(), '(');
    EXPECT_TRUE(in_front.ends_with(whole));
    EXPECT_GT(among.size(), whole.size());
    EXPECT_EQ(digits(among), digits(whole));
    EXPECT_EQ(clean, whole);
  }
}

TEST_F(UpsModelTest, AFloodOfQuestionsDoesNotPileUp) {
  std::string flood;
  for (int i = 0; i < 100'000; ++i) flood += "Q1\r";
  ups.Receive(flood);
  EXPECT_LT(ups.Take().size(), 10'000U);
  EXPECT_TRUE(Answers());
}

TEST_F(UpsModelTest, OrdersReachTheModel) {
  OrderTable orders;
  AddUpsOrders(orders, ups);
  for (const char* order : {"mains off", "battery 20", "load 110", "temperature 40", "bypass on",
                            "fault on", "input 240.5", "output 110", "frequency 60"}) {
    EXPECT_EQ(orders.Run(order), "") << order;
  }
  EXPECT_EQ(ups.StatusReply(), "(000.0 230.0 000.0 110 60.0 1.83 40.0 11110001\r");
  for (const char* order : {"mains on", "bypass off", "fault off", "battery 100"}) {
    EXPECT_EQ(orders.Run(order), "") << order;
  }
  EXPECT_EQ(ups.StatusReply(), "(240.5 230.0 110.0 110 60.0 2.27 40.0 00000001\r");
  EXPECT_EQ(orders.Run("mute"), "");
  EXPECT_FALSE(Answers());
  EXPECT_EQ(orders.Run("unmute"), "");
  EXPECT_EQ(orders.Run("noise"), "");
  EXPECT_NE(Ask("Q1"), ups.StatusReply());
  EXPECT_EQ(orders.Run("noise off"), "");
  EXPECT_EQ(orders.Run("split on"), "");
  EXPECT_EQ(Ask("Q1"), "(");
  for (const char* order :
       {"battery 101", "battery -1", "load 1000", "temperature hot", "mains no"})
    EXPECT_NE(orders.Run(order), "") << order;
}

}  // namespace
}  // namespace orvane::test
