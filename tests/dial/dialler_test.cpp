#include "dial/dialler.h"

#include "dial/planned_call.h"

namespace orvane::test {
namespace {

TEST_F(DiallerTest, SpeaksChinese) {
  state.ResBase = kChineseBase;
  calls = {{kBusyOk}, {kOk}};
  Start();
  Finish();
  const std::vector<std::string> expected = {
      "0.00 > ATDT119;\r", "1.00 BUSY\r\nOK\r\n", "1.00 线路忙,稍候再拨", "1.00 > ATH\r",
      "4.00 拨号次数:1",   "4.00 > ATDT119;\r",   "5.00 \r\nOK\r\n",      "5.00 拨号成功,稍侯挂机",
      "26.00 挂机",        "26.00 > ATH\r",       "29.00 拨号次数:2",     "29.00 拨号成功"};
  EXPECT_EQ(notes, expected);
}

TEST_F(DiallerTest, NumberIsTrimmedAtItsEndsAlone) {
  const struct {
    const char* number;
    const char* sent;  // nothing: no call, and the port is not touched
  } cases[] = {
      {"", ""}, {"   ", ""}, {" 119 ", "ATDT119;\r"}, {"0,,12 34-W(5)", "ATDT0,,12 34-W(5);\r"}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.number);
    state.PhoneCode = c.number;
    MSComm2.sent.clear();
    Start();
    EXPECT_EQ(MSComm2.Wire(), c.sent);
    EXPECT_EQ(dialler.Running(), *c.sent != 0);
    EXPECT_EQ(TimerDial.Enabled(), *c.sent != 0);
    EXPECT_EQ(MSComm2.PortOpen(), *c.sent != 0);
    EXPECT_EQ(panel.Label13.Caption(), "");
    dialler.Stop();
    MSComm2.PortOpen(false);
  }
}

TEST_F(DiallerTest, PortThatDoesNotOpenIsToldAndNotTriedAgain) {
  MSComm2.present = {1, 2, 4};
  for (const int slot : {0, -1, 5, 3}) {
    SCOPED_TRACE(slot);
    state.Settings[kModemPort] = static_cast<std::int16_t>(slot);
    panel.Label13.Caption("");
    notes.clear();
    Start();
    EXPECT_FALSE(dialler.Running());
    EXPECT_FALSE(TimerDial.Enabled());
    EXPECT_FALSE(MSComm2.PortOpen());
    time.Advance(60s);
    EXPECT_EQ(notes, std::vector<std::string>{"0.00 Modem can't use appointed COM port."});
  }
}

TEST_F(DiallerTest, TakesThePortThatTheRunBeforeLeftOpen) {
  Start();
  Finish();
  ASSERT_TRUE(MSComm2.PortOpen());
  MSComm2.Receive("OK");
  state.Settings[kModemPort] = 4;
  calls = {{kBusyOk}};
  Start();
  EXPECT_EQ(MSComm2.CommPort(), 4);
  EXPECT_EQ(MSComm2.InBufferCount(), 0U);
  time.Advance(1s);
  EXPECT_EQ(panel.Label13.Caption(), "Busy");
}

struct FaultCase {
  int reason;
  const char *ac, *battery, *ups;
  bool calls;
};

TEST_F(DiallerTest, DialsOnlyForAFaultThatStillShows) {
  const FaultCase cases[] = {
      {kAcFail, "Fail", "Normal", "Normal", true},
      {kAcFail, "Normal", "Low", "Fail", false},
      {kBatteryLow, "Normal", "Low", "Normal", true},
      {kBatteryLow, "Fail", "Normal", "Fail", false},
      {kUpsFail, "Normal", "Normal", "Fail", true},
      {kUpsFail, "Fail", "Low", "Normal", false},
      // A lost link empties the captions.
      {kAcFail, "", "", "", true},
      {0, "Fail", "Low", "Fail", false},
  };
  for (const FaultCase& c : cases) {
    SCOPED_TRACE(testing::Message() << c.reason << c.ac << c.battery << c.ups);
    panel.lblAc.Caption(c.ac);
    panel.lblBatt.Caption(c.battery);
    panel.lblUps.Caption(c.ups);
    Start(c.reason);
    EXPECT_EQ(dialler.Running(), c.calls);
    EXPECT_EQ(TimerDial.Enabled(), c.calls);
    EXPECT_EQ(state.Main.DialReason, c.reason);
    dialler.Stop();
  }
}

TEST_F(DiallerTest, TicksDuringARunStartNothing) {
  calls = {{kOk}};
  Start();
  int ticks = 0;
  const auto tick = TimerDial.Tick;
  TimerDial.Tick = [&] {
    ++ticks;
    tick();
  };
  for (int second = 0; second < 24; ++second) {
    time.Advance(1s);
    EXPECT_TRUE(TimerDial.Enabled());
    TimerDial.Enabled(true);
  }
  EXPECT_EQ(ticks, 4);
  EXPECT_EQ(MSComm2.Wire(), "ATDT119;\rATH\r");
  time.Advance(1s);
  EXPECT_FALSE(TimerDial.Enabled());
  time.Advance(60s);
  EXPECT_EQ(MSComm2.Wire(), "ATDT119;\rATH\r");
}

TEST_F(DiallerTest, DisarmingEndsTheRunWhereItStands) {
  calls = {{kOk}};
  for (const auto moment : {milliseconds(500), milliseconds(10000), milliseconds(23500)}) {
    SCOPED_TRACE(moment.count());
    calls = {{kOk}};
    Start();
    time.Advance(moment);
    ASSERT_TRUE(dialler.Running());
    const std::size_t said = notes.size();
    TimerDial.Enabled(false);
    time.Advance(120s);
    EXPECT_EQ(notes.size(), said);
    EXPECT_FALSE(dialler.Running());
    EXPECT_FALSE(dial_pass.Enabled());
    EXPECT_TRUE(MSComm2.PortOpen());
  }
}

struct ClockCase {
  const char* name;
  milliseconds when;  // since the ringing began
  LocalTime now;      // what the clock is set to then; it shows 9:05:39 when the ringing begins
  milliseconds rings;
};

// The wait counts seconds of the clock that anyone may set.
TEST_F(DiallerTest, RingingFollowsTheClock) {
  const ClockCase cases[] = {
      {"set ahead", 5s, {2001, 2, 16, 9, 6, 0}, 5020ms},
      {"set ahead by a minute", 5s, {2001, 2, 16, 9, 6, 44}, 21s},
      {"set ahead by a day", 5s, {2001, 2, 17, 9, 5, 44}, 21s},
      {"set back by a second", 5s, {2001, 2, 16, 9, 5, 43}, 21s},
      {"set back to before the call", 5s, {2001, 2, 16, 9, 5, 0}, 21s},
      {"set back by an hour", 20s, {2001, 2, 16, 8, 5, 59}, 21s},
  };
  for (const ClockCase& c : cases) {
    SCOPED_TRACE(c.name);
    time.SetWall({2001, 2, 16, 9, 5, 33});
    calls = {{kOk}};
    notes.clear();
    Start();
    time.Advance(1s);
    ASSERT_EQ(panel.Label13.Caption(), "Succeed");
    time.Advance(c.when);
    time.SetWall(c.now);
    Finish();
    ASSERT_EQ(notes.size(), 7U);
    char hang_up[32];
    std::snprintf(hang_up, sizeof hang_up, "%.2f Hang up",
                  static_cast<double>((1s + c.rings).count()) / 1e3);
    EXPECT_EQ(notes[3], hang_up);
  }
}

TEST_F(DiallerTest, ModemThatVanishesEndsAtThePassLimit) {
  calls = {{kNoCarrier}};
  Start();
  time.Advance(2s);
  MSComm2.Unplug();
  notes.clear();
  Finish();
  EXPECT_EQ(notes, (std::vector<std::string>{"4.00 dialling times:1",
                                             "54.02 Can not dail,please check Modem line"}));
  EXPECT_FALSE(MSComm2.PortOpen());
}

TEST_F(DiallerTest, FloodsAreTakenInBoundedMemory) {
  using namespace std::string_literals;
  std::string noise;
  for (int i = 0; i < 4096; ++i) noise += "\0\xFF\r\n\x80\x1B正O"s;
  Replies flood(30, Reply{10ms, noise});
  flood.push_back({10ms, "K"});
  flood.insert(flood.end(), 100, Reply{200ms, noise});
  calls = {flood};
  Start();
  std::size_t most_waiting = 0;
  for (int pass = 0; pass < 500; ++pass) {
    time.Advance(20ms);
    most_waiting = std::max(most_waiting, MSComm2.InBufferCount());
    EXPECT_LE(panel.Label13.Caption().size(), ReplyBuffer::kShown);
  }
  EXPECT_LE(most_waiting, 2 * noise.size());
  EXPECT_EQ(panel.Label13.Caption(), "Succeed");
}

TEST_F(DiallerTest, StopLeavesAnIdleDiallerArmed) {
  TimerDial.Enabled(true);
  dialler.Stop();
  EXPECT_TRUE(TimerDial.Enabled());
}

}  // namespace
}  // namespace orvane::test
