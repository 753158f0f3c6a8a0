#include "link/ups_link.h"

#include <gtest/gtest.h>

#include "app/captions.h"
#include "app/gauges.h"
#include "app/settings.h"
#include "support/status_frame.h"
#include "support/world.h"

namespace orvane::test {
namespace {

using std::chrono::milliseconds;

class UpsLinkTest : public testing::Test, public World {
 protected:
  UpsLinkTest() {
    link.Attach();
    CaptureNeedles(panel, state.Main);
    SetCaptions(state, panel);
    Timer1.Interval(2000);
    Timer1.Tick = [this] { link.Timer1_Timer(); };
    Timer1.Enabled(true);
    MSComm1.RThreshold(1);
  }

  // The UPS answers polls from now on, or falls silent.
  void Answer(bool answers, const char* bits = "0000") {
    MSComm1.OnSent = [=, this](const std::string& text) {
      if (answers && text == "Q1\r") MSComm1.Receive(StatusFrame{.bits = bits}.Text());
    };
  }

  void Polls(int count) { time.Advance(milliseconds(2000 * count)); }
  bool LinkShown() const { return panel.lblConnect.ForeColor() == kBlue; }

  UpsLink link{state, panel, journals, seams};
};

TEST_F(UpsLinkTest, Ports) {
  struct Case {
    const char* name;
    std::int16_t slot;
    std::set<int> present;
    int opened;  // 0: none
    std::int16_t port_try;
    const char* line;
    const char* box;
  };
  const Case cases[] = {
      {"search, the first", 0, {1, 2}, 1, 0, "UPS Install on:Com1", nullptr},
      {"search, the third", 0, {3, 4}, 3, 2, "UPS Install on:Com3", nullptr},
      {"search, none",
       0,
       {},
       0,
       3,
       "The com port is invalidate!",
       "Exclamation [Warning] None com port can be use"},
      {"fixed", 2, {1, 2}, 2, 0, "UPS Install on:Com2", nullptr},
      {"fixed, absent",
       2,
       {1},
       0,
       0,
       "The port is invalidate",
       "Exclamation [Warning] The appointed COM port is invalidate!"},
      {"fixed, no such number",
       7,
       {1},
       0,
       0,
       "The port is invalidate",
       "Exclamation [Warning] The appointed COM port is invalidate!"},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.name);
    MSComm1.PortOpen(false);
    MSComm1.present = row.present;
    state.Settings[kUpsPort] = row.slot;
    state.Main = {};
    events.clear();
    Timer1.Enabled(true);
    Timer2.Enabled(true);
    link.OpenPort();
    EXPECT_EQ(MSComm1.PortOpen(), row.opened != 0);
    if (row.opened != 0) {
      EXPECT_EQ(MSComm1.CommPort(), row.opened);
    }
    EXPECT_EQ(state.Main.PortTry, row.port_try);
    EXPECT_EQ(panel.Label14.Caption(), row.line);
    EXPECT_EQ(events, row.box ? Events{row.box} : Events{});
    EXPECT_EQ(Timer1.Enabled(), row.opened != 0);
    EXPECT_EQ(Timer2.Enabled(), row.opened != 0 || row.slot == 0);
  }
  EXPECT_EQ(MSComm1.Settings(), "2400,N,8,1");
  EXPECT_TRUE(MSComm1.sent.empty());
}

TEST_F(UpsLinkTest, PollsEveryTwoSeconds) {
  link.OpenPort();
  time.Advance(milliseconds(1999));
  EXPECT_TRUE(MSComm1.sent.empty());
  time.Advance(milliseconds(1));
  EXPECT_EQ(MSComm1.Wire(), "Q1\r");
  Polls(2);
  EXPECT_EQ(MSComm1.Wire(), "Q1\rQ1\rQ1\r");
}

TEST_F(UpsLinkTest, LinkIsLostOnTheFourthPollWithoutAnswer) {
  link.OpenPort();
  Answer(true, "1000");
  Polls(5);
  ASSERT_TRUE(LinkShown());
  MSComm1.Receive("OV,700,2.1,220,x,8,12,y,zzzzzz");
  ASSERT_EQ(panel.Label7[1].Caption(), "OV");
  ASSERT_TRUE(Timer2.Enabled());
  state.Main.AlertSeconds = 5;
  Answer(false);
  Polls(3);
  EXPECT_TRUE(LinkShown());
  Polls(1);
  EXPECT_EQ(panel.lblConnect.Caption(), "No conn");
  EXPECT_EQ(panel.lblConnect.ForeColor(), kRed);
  for (const Label& field : panel.Label7) EXPECT_EQ(field.Caption(), "UnKnown");
  for (const Label* line : {&panel.lblAc, &panel.lblBatt, &panel.lblBattIn, &panel.lblUps}) {
    EXPECT_EQ(line->Caption(), "");
  }
  EXPECT_EQ(panel.lblAc.ForeColor(), kRed);
  EXPECT_EQ(panel.lblUps.ForeColor(), kBlue);
  const Panel rest;
  for (std::size_t i = 0; i < kGauges; ++i) {
    EXPECT_EQ(panel.Label2[i].Caption(), "0");
    EXPECT_EQ(panel.Line1[i].Line(), rest.Line1[i].Line());
  }
  EXPECT_EQ(panel.lblApcAc.Caption(), "0");
  EXPECT_FALSE(Timer2.Enabled());
  EXPECT_EQ(panel.Label13.Caption(), "Ready");
  EXPECT_EQ(state.Main.AlertSeconds, 5);
  // The warning line goes by colour and stays.
  EXPECT_EQ(panel.lblAlert[1].Caption(), state.Message(35));
  EXPECT_TRUE(panel.lblAlert[1].Visible());
  // The loss is a change of the link's caption, so the UPS is asked for its data, in vain.
  EXPECT_EQ(MSComm1.sent.back(), "MD\r");
}

TEST_F(UpsLinkTest, SilentFromTheStartAndCountersAfterTheReturn) {
  link.OpenPort();
  Polls(3);
  EXPECT_EQ(state.Main.PollsSent, 3);
  Polls(1);
  EXPECT_EQ(panel.lblConnect.Caption(), "No conn");
  EXPECT_EQ(state.Main.PollsSent, 0);
  // Back on the second poll after the loss; the next loss takes four more.
  Polls(1);
  Answer(true);
  Polls(1);
  EXPECT_TRUE(LinkShown());
  EXPECT_EQ(state.Main.PollsAnswered, 2);
  Answer(false);
  Polls(3);
  EXPECT_TRUE(LinkShown());
  Polls(1);
  EXPECT_FALSE(LinkShown());
}

TEST_F(UpsLinkTest, DeadLinkRepeatsTheLossOnlyAfterAnsweredAndFourPolls) {
  link.OpenPort();
  Answer(true);
  Polls(6);
  Answer(false);
  Polls(4);
  ASSERT_EQ(state.Main.PollsSent, 0);
  panel.Label13.Caption("mark");
  Polls(9);
  EXPECT_EQ(panel.Label13.Caption(), "mark");
  Polls(1);
  EXPECT_EQ(panel.Label13.Caption(), "Ready");
}

TEST_F(UpsLinkTest, InformationRepliesHoldTheLossOff) {
  link.OpenPort();
  MSComm1.OnSent = [this](const std::string& text) {
    if (text == "Q1\r") MSComm1.Receive("OV,700,2.1,220,x,8,12,y,zzzzzz");
  };
  Polls(20);
  EXPECT_EQ(panel.lblConnect.Caption(), "No Conn");
  EXPECT_EQ(panel.Label7[1].Caption(), "OV");
}

TEST_F(UpsLinkTest, FloodLivesForOnePollPeriod) {
  link.OpenPort();
  Polls(1);
  for (int i = 0; i < 256; ++i) MSComm1.Receive(std::string(4096, '\xA5'));
  EXPECT_EQ(state.Main.RxText.size(), 1U << 20);
  Answer(true);
  Polls(1);
  EXPECT_TRUE(LinkShown());
  EXPECT_LE(state.Main.RxText.capacity(), 4096U);
}

TEST_F(UpsLinkTest, VanishedDeviceIsAskedForWithEveryPoll) {
  link.OpenPort();
  Answer(true);
  Polls(3);
  ASSERT_TRUE(LinkShown());
  MSComm1.Unplug();
  Polls(4);
  EXPECT_FALSE(LinkShown());
  EXPECT_FALSE(MSComm1.PortOpen());
  EXPECT_TRUE(Timer1.Enabled());
  EXPECT_TRUE(events.empty());
  MSComm1.present = {1};
  Polls(1);
  EXPECT_TRUE(LinkShown());
}

TEST_F(UpsLinkTest, RefusedWriteIsASilentPoll) {
  link.OpenPort();
  Answer(true);
  Polls(2);
  MSComm1.refuse_writes = true;
  Polls(4);
  EXPECT_FALSE(LinkShown());
  MSComm1.refuse_writes = false;
  Polls(1);
  EXPECT_TRUE(LinkShown());
}

TEST_F(UpsLinkTest, FaultThatLastsThroughAGapIsNotLoggedAgain) {
  link.OpenPort();
  Answer(true);
  Polls(1);
  Answer(true, "1000");
  Polls(1);
  const std::string log = Log();
  ASSERT_NE(log, "");
  Answer(false);
  Polls(4);
  Answer(true, "1000");
  Polls(3);
  EXPECT_EQ(Log(), log);
  EXPECT_TRUE(Timer2.Enabled());
}

}  // namespace
}  // namespace orvane::test
