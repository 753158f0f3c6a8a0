#include "link/ups_link.h"

#include <gtest/gtest.h>

#include <functional>

#include "app/captions.h"
#include "app/gauges.h"
#include "app/settings.h"
#include "support/status_frame.h"
#include "support/world.h"

namespace orvane::test {
namespace {

constexpr const char* kInformation = "OV,700,2.1,220,x,8,12,y,zzzzzz";

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

  // The UPS answers polls from now on with this text; with none, it is silent.
  void Answer(const std::string& reply) {
    MSComm1.OnSent = [=, this](const std::string& text) {
      if (text == "Q1\r") MSComm1.Receive(reply);
    };
  }

  void Reply(const char* bits, const char* load = "035") {
    MSComm1.Receive(StatusFrame{.load = load, .bits = bits}.Text());
  }

  void Polls(int count) { time.Advance(std::chrono::seconds(2 * count)); }
  bool LinkShown() const { return panel.lblConnect.ForeColor() == kBlue; }

  const std::string all_well = StatusFrame{}.Text();
  UpsLink link{state, panel, journals, seams};
};

TEST_F(UpsLinkTest, Ports) {
  constexpr const char* kNone = "Exclamation [Warning] None com port can be use";
  constexpr const char* kAbsent = "Exclamation [Warning] The appointed COM port is invalidate!";
  const struct {
    const char* name;
    std::int16_t slot;
    std::set<int> present;
    int opened;  // 0: none
    std::int16_t port_try;
    const char* line;
    Events box;
  } cases[] = {
      {"search, the first", 0, {1, 2}, 1, 0, "UPS Install on:Com1", {}},
      {"search, the third", 0, {3, 4}, 3, 2, "UPS Install on:Com3", {}},
      {"search, none", 0, {}, 0, 3, "The com port is invalidate!", {kNone}},
      {"fixed", 2, {1, 2}, 2, 0, "UPS Install on:Com2", {}},
      {"fixed, absent", 2, {1}, 0, 0, "The port is invalidate", {kAbsent}},
      {"fixed, no such number", 7, {1}, 0, 0, "The port is invalidate", {kAbsent}},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.name);
    MSComm1.PortOpen(false);
    MSComm1.present = row.present;
    state.Settings[kUpsPort] = row.slot;
    state.Main = {};
    events.clear();
    Timer1.Enabled(true);
    Timer2.Enabled(true);
    link.OpenPort();
    EXPECT_EQ(MSComm1.PortOpen() ? MSComm1.CommPort() : 0, row.opened);
    EXPECT_EQ(state.Main.PortTry, row.port_try);
    EXPECT_EQ(panel.Label14.Caption(), row.line);
    EXPECT_EQ(events, row.box);
    EXPECT_EQ(Timer1.Enabled(), row.opened != 0);
    EXPECT_EQ(Timer2.Enabled(), row.opened != 0 || row.slot == 0);
  }
  EXPECT_EQ(MSComm1.Settings(), "2400,N,8,1");
  EXPECT_TRUE(MSComm1.sent.empty());
}

TEST_F(UpsLinkTest, LostLinkTakesAllThatWasShown) {
  link.OpenPort();
  Answer(StatusFrame{.bits = "1000"}.Text());
  Polls(5);
  MSComm1.Receive(kInformation);
  ASSERT_EQ(panel.Label7[1].Caption(), "OV");
  state.Main.AlertSeconds = 5;
  Answer("");
  Polls(3);
  EXPECT_TRUE(LinkShown());
  EXPECT_TRUE(Timer2.Enabled());
  Polls(1);
  EXPECT_EQ(panel.lblConnect.Caption(), "No conn");
  EXPECT_FALSE(LinkShown());
  for (const Label& field : panel.Label7) EXPECT_EQ(field.Caption(), "UnKnown");
  for (const Label* line : {&panel.lblAc, &panel.lblBatt, &panel.lblBattIn, &panel.lblUps}) {
    EXPECT_EQ(line->Caption(), "");
    EXPECT_EQ(line->ForeColor(), line == &panel.lblAc ? kRed : kBlue);
  }
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

TEST_F(UpsLinkTest, FourPollsInVainLoseTheLinkAndAReplyBringsItBack) {
  const struct {
    const char* name;
    std::function<void()> fail, heal;
  } cases[] = {
      {"silence", [&] { Answer(""); }, [&] { Answer(all_well); }},
      {"refused writes", [&] { MSComm1.refuse_writes = true; },
       [&] { MSComm1.refuse_writes = false; }},
      {"a device that vanishes and is asked for with every poll", [&] { MSComm1.Unplug(); },
       [&] { MSComm1.present = {1}; }},
  };
  link.OpenPort();
  Answer(all_well);
  for (const auto& row : cases) {
    SCOPED_TRACE(row.name);
    Polls(6);
    ASSERT_TRUE(LinkShown());
    const int answered = state.Main.PollsAnswered;
    row.fail();
    Polls(3);
    EXPECT_TRUE(LinkShown());
    Polls(1);
    EXPECT_FALSE(LinkShown());
    EXPECT_EQ(state.Main.PollsSent, 0);
    // The next loss is told when the polls are four ahead of the answered ones again.
    panel.Label13.Caption("mark");
    Polls(answered + 3);
    EXPECT_EQ(panel.Label13.Caption(), "mark");
    Polls(1);
    EXPECT_EQ(panel.Label13.Caption(), "Ready");
    row.heal();
    Polls(1);
    EXPECT_TRUE(LinkShown());
  }
  EXPECT_TRUE(events.empty());
}

TEST_F(UpsLinkTest, FloodLivesForOnePollPeriod) {
  link.OpenPort();
  Polls(1);
  for (int i = 0; i < 256; ++i) MSComm1.Receive(std::string(4096, '\xA5'));
  EXPECT_EQ(state.Main.RxText.size(), 1U << 20);
  Answer(all_well);
  Polls(1);
  EXPECT_TRUE(LinkShown());
  EXPECT_LE(state.Main.RxText.capacity(), 4096U);
}

TEST_F(UpsLinkTest, BitsBecomeStateLines) {
  const struct {
    const char* bits;
    const char* lines[4];
  } cases[] = {
      {"0000", {"Normal", "Normal", "On Line", "Normal"}},
      {"1000", {"Fail", "Normal", "On Line", "Normal"}},
      {"0100", {"Normal", "Low", "On Line", "Normal"}},
      {"0010", {"Normal", "Normal", "By Pass", "Normal"}},
      {"0001", {"Normal", "Normal", "On Line", "Fail"}},
      {"2 x-", {"Normal", "Normal", "On Line", "Normal"}},
  };
  link.OpenPort();
  for (const auto& row : cases) {
    SCOPED_TRACE(row.bits);
    Reply(row.bits);
    const Label* const lines[] = {&panel.lblAc, &panel.lblBatt, &panel.lblBattIn, &panel.lblUps};
    for (int i = 0; i < 4; ++i) {
      EXPECT_EQ(lines[i]->Caption(), row.lines[i]);
      EXPECT_EQ(lines[i]->ForeColor(), row.bits[i] == '1' ? kRed : kBlue);
    }
  }
}

// The digits that the dialog writes are tried by the random histories.
TEST_F(UpsLinkTest, DialConditionsThatNoDialogWrites) {
  const struct {
    std::int16_t conditions;
    const char* bits;
    int reason;  // 0: no dial asked
  } cases[] = {{200, "1000", 0}, {111, "0010", 0}, {-1, "1101", 0},
               {-1, "0001", 0},  {190, "1101", 1}, {112, "0101", 2}};
  link.OpenPort();
  for (const auto& row : cases) {
    SCOPED_TRACE(std::to_string(row.conditions) + " " + row.bits);
    TimerDial.Enabled(false);
    state.Main.DialReason = 0;
    state.Settings[kDialConditions] = row.conditions;
    Reply(row.bits);
    EXPECT_EQ(state.Main.DialReason, row.reason);
    EXPECT_EQ(TimerDial.Enabled(), row.reason != 0);
  }
}

TEST_F(UpsLinkTest, WarningLineFollowsThePollByColour) {
  link.OpenPort();
  const Label& line = panel.lblAlert[1];
  const auto shown = [&] { return line.Visible() ? line.Caption() : std::string(); };
  std::string before;
  for (const auto& [bits, message] : {std::pair{"1010", 34}, {"1000", 35}, {"0000", 0}}) {
    SCOPED_TRACE(bits);
    Reply(bits);
    EXPECT_EQ(shown(), before);
    link.Timer1_Timer();
    EXPECT_EQ(shown(), state.Message(message));
    before = shown();
  }
}

TEST_F(UpsLinkTest, LinkChangeAsksForTheUpsData) {
  link.OpenPort();
  Reply("0000");
  Reply("0000");
  EXPECT_EQ(MSComm1.Wire(), "MD\r");
  // A link that comes back takes down the warnings of before, inside the write of its caption.
  panel.lblConnect.Caption(state.Message(33));
  panel.lblConnect.ForeColor(kRed);
  panel.lblAlert[1].Visible(true);
  Reply("1000", "110");
  EXPECT_FALSE(panel.lblAlert[1].Visible());
  EXPECT_FALSE(panel.lblAlert[2].Visible());
  EXPECT_EQ(MSComm1.Wire(), "MD\rMD\rMD\r");
  Reply("1000", "110");
  EXPECT_TRUE(panel.lblAlert[2].Visible());
  EXPECT_EQ(panel.lblAlert[2].Caption(), state.Message(23));
}

}  // namespace
}  // namespace orvane::test
