// Emergency calls of the whole program: what arms them, and that nothing waits for them.
#include <vector>

#include "protect/watched_ups.h"

namespace orvane::test {
namespace {

using namespace std::chrono_literals;

class EmergencyCallTest : public WatchedUps {
 protected:
  void Start(int conditions, const char* number = "119") {
    disk.files["/prog/Orvane.ini"] =
        "1,10,0,2,0,2,30,1,3," + std::to_string(conditions) + ",\"" + number + "\",0\r\n";
    ASSERT_TRUE(main.Form_Load());
    forms.open.insert(Form::frmMain);
    main.Form_Activate();
    MSComm2.OnSent = [this](const std::string& text) {
      if (text.starts_with("ATDT")) {
        called.push_back(time.Steady());
        MSComm2.Receive(answer);
      }
    };
  }

  std::vector<std::chrono::milliseconds> called;  // when each call went out
  const char* answer = "OK";
};

TEST_F(EmergencyCallTest, FaultThatClearsInTimeCallsNobody) {
  Start(100);
  NextReply(kMainsFailed);
  Seconds(2);
  NextReply(kAllWell);
  EXPECT_TRUE(TimerDial.Enabled());
  Seconds(60);
  EXPECT_TRUE(called.empty());
  EXPECT_FALSE(TimerDial.Enabled());
  EXPECT_EQ(state.Main.DialReason, kAcFail);
}

TEST_F(EmergencyCallTest, LaterFaultTakesTheCallOverWithoutDelayingIt) {
  Start(111);
  NextReply(kMainsFailed);
  const auto armed = time.Steady();
  NextReply(kMainsFailedBatteryLow);
  EXPECT_EQ(state.Main.DialReason, kBatteryLow);
  // The battery recovers: the fault that asked last is gone, though mains is still away. Mains asks
  // again with the same reply.
  NextReply(kMainsFailed);
  EXPECT_EQ(state.Main.DialReason, kAcFail);
  time.Advance(armed + 5s - time.Steady());
  EXPECT_EQ(called, std::vector{armed + 5s});
}

TEST_F(EmergencyCallTest, LastingFaultCallsAgainAndAgain) {
  Start(100);
  NextReply(kMainsFailed);
  // Each call rings 21 counted seconds and takes 3 to hang up; the next reply, one second later at
  // most, arms the next one.
  Seconds(120);
  ASSERT_EQ(called.size(), 4U);
  for (std::size_t i = 1; i < called.size(); ++i) {
    EXPECT_GE(called[i] - called[i - 1], 29s);
    EXPECT_LE(called[i] - called[i - 1], 31s);
  }
}

TEST_F(EmergencyCallTest, PollAndCountNeverWaitForTheModem) {
  Start(100);
  NextReply(kMainsFailed);
  const auto began = time.Steady();
  std::vector<std::chrono::milliseconds> polls;
  int ticks = 0;
  MSComm1.OnSent = [&](const std::string& text) {
    if (text != "Q1\r") return;
    polls.push_back(time.Steady());
    MSComm1.Receive(StatusFrame{.bits = bits}.Text());
  };
  const auto tick = Timer2.Tick;
  Timer2.Tick = [&] {
    ++ticks;
    tick();
  };
  answer = "";
  Seconds(60);
  EXPECT_EQ(called, std::vector{began + 5s});
  EXPECT_EQ(ticks, 60);
  EXPECT_EQ(state.ShutdownCountdown, 600 - 60);
  ASSERT_EQ(polls.size(), 30U);
  for (std::size_t i = 1; i < polls.size(); ++i) EXPECT_EQ(polls[i] - polls[i - 1], 2s);
}

TEST_F(EmergencyCallTest, CallEndsWhenTheComputerGoesDown) {
  dialogs.answer = true;
  Start(100);
  NextReply(kMainsFailed);
  Seconds(10);
  ASSERT_EQ(panel.Label13.Caption(), SecondsLeft(590));
  main.mnuShutDown_Click();
  ASSERT_TRUE(Down());
  Seconds(120);
  EXPECT_EQ(MSComm2.Wire(), "ATDT119;\r");
  EXPECT_EQ(panel.Label13.Caption(), "Saving files and exit windows...");
  EXPECT_FALSE(dial_pass.Enabled());
  // The port is closed with all the rest when the program ends.
  EXPECT_TRUE(MSComm2.PortOpen());
  main.Form_QueryUnload();
  EXPECT_FALSE(MSComm1.PortOpen());
  EXPECT_FALSE(MSComm2.PortOpen());
}

TEST_F(EmergencyCallTest, CallEndsWithTheFormAndLeavesNothingToTheNext) {
  Start(100);
  NextReply(kMainsFailed);
  Seconds(10);
  ASSERT_EQ(MSComm2.Wire(), "ATDT119;\r");
  main.Form_QueryUnload();
  EXPECT_FALSE(MSComm1.PortOpen());
  EXPECT_FALSE(MSComm2.PortOpen());
  EXPECT_FALSE(dial_pass.Enabled());
  EXPECT_FALSE(TimerDial.Enabled());
  ASSERT_TRUE(main.Form_Load());
  EXPECT_FALSE(dial_pass.Enabled());
  Seconds(60);
  EXPECT_EQ(MSComm2.Wire(), "ATDT119;\r");
  // The form that was shown again calls as the first one did.
  main.Form_Activate();
  NextReply(kMainsFailed);
  Seconds(6);
  EXPECT_EQ(MSComm2.Wire(), "ATDT119;\rATDT119;\r");
}

TEST_F(EmergencyCallTest, LeavesNoTraceInTheJournals) {
  Start(1);
  bits = "0001";
  Seconds(300);
  EXPECT_GT(called.size(), 5U);
  EXPECT_EQ(Log(), "\"\n2001-02-16 9:05:33 Program start\"\r\n");
  EXPECT_EQ(DateRec(), "");
}

}  // namespace
}  // namespace orvane::test
