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
    poll_timer.Interval(2000);
    poll_timer.Tick = [this] { link.OnPoll(); };
    poll_timer.Enabled(true);
    ups_port.Notify(true);
  }

  // The UPS answers polls from now on with this text; with none, it is silent.
  void Answer(const std::string& reply) {
    ups_port.OnSent = [=, this](const std::string& text) {
      if (text == "Q1\r") ups_port.Receive(reply);
    };
  }

  void Reply(const char* bits, const char* load = "035") {
    ups_port.Receive(StatusFrame{.load = load, .bits = bits}.Text());
  }

  void Polls(int count) { time.Advance(std::chrono::seconds(2 * count)); }
  bool LinkShown() const { return panel.link.ForeColor() == kBlue; }

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
    ups_port.Close();
    ups_port.present = row.present;
    state.Settings[kUpsPort] = row.slot;
    state.Main = {};
    events.clear();
    poll_timer.Enabled(true);
    countdown_timer.Enabled(true);
    link.OpenPort();
    EXPECT_EQ(ups_port.IsOpen() ? ups_port.Number() : 0, row.opened);
    EXPECT_EQ(state.Main.PortTry, row.port_try);
    EXPECT_EQ(panel.port_line.Caption(), row.line);
    EXPECT_EQ(events, row.box);
    EXPECT_EQ(poll_timer.Enabled(), row.opened != 0);
    EXPECT_EQ(countdown_timer.Enabled(), row.opened != 0 || row.slot == 0);
  }
  EXPECT_EQ(ups_port.Line(), "2400,N,8,1");
  EXPECT_TRUE(ups_port.sent.empty());
}

TEST_F(UpsLinkTest, PortThatComesLateIsTakenUp) {
  for (const std::int16_t slot : {std::int16_t{0}, std::int16_t{2}}) {
    for (const bool behind_the_box : {false, true}) {
      SCOPED_TRACE(std::to_string(slot) + (behind_the_box ? " behind the box" : ""));
      const auto change = [&](std::set<int> present) {
        ups_port.present = present;
        link.OnDevicesChange();
      };
      ups_port.Close();
      ups_port.present = {};
      state.Main = {};
      state.Settings[kUpsPort] = slot;
      events.clear();
      dialogs.OnBox = [&] {
        if (behind_the_box) change({2});
      };
      link.OpenPort();
      EXPECT_EQ(ups_port.IsOpen(), behind_the_box);
      change({});
      if (!behind_the_box) {
        EXPECT_FALSE(poll_timer.Enabled());
        change({2});
      }
      EXPECT_TRUE(ups_port.IsOpen());
      EXPECT_TRUE(poll_timer.Enabled());
      EXPECT_EQ(panel.port_line.Caption(), "UPS Install on:Com2");
      EXPECT_EQ(events.size(), 1U) << "one box";
    }
  }
  // One that was lost comes back with a poll, and not before.
  ups_port.Unplug();
  ups_port.present = {2};
  link.OnDevicesChange();
  EXPECT_FALSE(ups_port.IsOpen());
}

// Each port of the search gets four polls, round and round.
TEST_F(UpsLinkTest, SearchGoesOnUntilAUpsAnswers) {
  int ups_at = 0;
  std::string tried;  // the port of each poll
  ups_port.OnSent = [&](const std::string& text) {
    if (text != "Q1\r") return;
    tried += std::to_string(ups_port.Number());
    if (ups_port.Number() == ups_at) ups_port.Receive(all_well);
  };
  const auto expect = [&](int polls, const char* ports) {
    tried.clear();
    Polls(polls);
    EXPECT_EQ(tried, ports);
    EXPECT_EQ(panel.port_line.Caption(), std::string("UPS Install on:Com") + tried.back());
  };
  ups_port.present = {1, 3, 4};
  link.OpenPort();
  expect(18, "111133334444111133");
  // The modem gets no polls while calls are asked for.
  state.Settings[kModemPort] = 4;
  state.Settings[kDialConditions] = 1;
  expect(10, "3311113333");
  // Neither does one that is named while the search stands on it.
  state.Settings[kModemPort] = 3;
  expect(2, "44");
  state.Settings[kModemPort] = 4;
  expect(2, "11");
  state.Settings[kDialConditions] = 0;
  // One that is pulled out makes way at once, and what is plugged in is found.
  ups_port.present = {4};
  ups_port.Close();
  expect(5, "44444");
  ups_port.present = {2, 4};
  ups_at = 2;
  expect(6, "444222");
  // A port that has answered is kept, lost or silent, and comes first with the next load.
  ups_port.Unplug();
  tried.clear();
  Polls(6);
  EXPECT_EQ(tried, "");
  ups_port.present = {1, 2, 3, 4};
  ups_at = 0;
  expect(20, "22222222222222222222");
  ups_port.Close();
  state.Main = {};
  link.OpenPort();
  expect(5, "22222");
  // A port chosen by number is never left.
  ups_port.Close();
  state.Settings[kUpsPort] = 1;
  link.OpenPort();
  expect(6, "111111");
}

TEST_F(UpsLinkTest, LostLinkTakesAllThatWasShown) {
  link.OpenPort();
  Answer(StatusFrame{.bits = "1000"}.Text());
  Polls(5);
  ups_port.Receive(kInformation);
  ASSERT_EQ(panel.information[UpsDatum::kModel].Caption(), "OV");
  state.Main.AlertSeconds = 5;
  Answer("");
  Polls(3);
  EXPECT_TRUE(LinkShown());
  EXPECT_TRUE(countdown_timer.Enabled());
  Polls(1);
  EXPECT_EQ(panel.link.Caption(), "No conn");
  EXPECT_FALSE(LinkShown());
  for (const Label& field : panel.information) EXPECT_EQ(field.Caption(), "UnKnown");
  for (const Label* line : {&panel.mains, &panel.battery, &panel.bypass, &panel.ups}) {
    EXPECT_EQ(line->Caption(), "");
    EXPECT_EQ(line->ForeColor(), line == &panel.mains ? kRed : kBlue);
  }
  const Panel rest;
  for (const Gauge gauge : kGauges) {
    EXPECT_EQ(panel.read_outs[gauge].Caption(), "0");
    EXPECT_EQ(panel.bar_figures[gauge].Caption(), "0");
    EXPECT_EQ(panel.needles[gauge].Line(), rest.needles[gauge].Line());
  }
  EXPECT_FALSE(countdown_timer.Enabled());
  EXPECT_EQ(panel.status_line.Caption(), "Ready");
  EXPECT_EQ(state.Main.AlertSeconds, 5);
  // The warning line goes by colour and stays.
  EXPECT_EQ(panel.supply_warning.Caption(), state.Text(Message::kMainsWarning));
  EXPECT_TRUE(panel.supply_warning.Visible());
  // The loss is a change of the link's caption, so the UPS is asked for its data. That alone brings
  // no link up.
  EXPECT_EQ(ups_port.sent.back(), "MD\r");
  ups_port.Receive(kInformation);
  EXPECT_FALSE(LinkShown());
}

TEST_F(UpsLinkTest, FourPollsInVainLoseTheLinkAndAReplyBringsItBack) {
  const struct {
    const char* name;
    std::function<void()> fail, heal;
  } cases[] = {
      {"silence", [&] { Answer(""); }, [&] { Answer(all_well); }},
      {"refused writes", [&] { ups_port.refuse_writes = true; },
       [&] { ups_port.refuse_writes = false; }},
      {"a device that vanishes and is asked for with every poll", [&] { ups_port.Unplug(); },
       [&] { ups_port.present = {1}; }},
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
    panel.status_line.Caption("mark");
    Polls(answered + 3);
    EXPECT_EQ(panel.status_line.Caption(), "mark");
    Polls(1);
    EXPECT_EQ(panel.status_line.Caption(), "Ready");
    row.heal();
    Polls(1);
    EXPECT_TRUE(LinkShown());
  }
  EXPECT_TRUE(events.empty());
}

TEST_F(UpsLinkTest, FloodLivesForOnePollPeriod) {
  link.OpenPort();
  Polls(1);
  for (int i = 0; i < 256; ++i) ups_port.Receive(std::string(4096, '\xA5'));
  EXPECT_EQ(state.Main.RxText.size(), 1U << 20);
  Answer(all_well);
  Polls(1);
  EXPECT_TRUE(LinkShown());
  EXPECT_LE(state.Main.RxText.capacity(), 4096U);
}

// The digits that the dialog writes are tried by the random histories.
TEST_F(UpsLinkTest, DialConditionsThatNoDialogWrites) {
  const struct {
    std::int16_t conditions;
    const char* bits;
    std::optional<Fault> reason;  // nothing: no call asked for
  } cases[] = {{200, "1000", {}},
               {111, "0010", {}},
               {-1, "1101", {}},
               {-1, "0001", {}},
               {190, "1101", Fault::kMains},
               {112, "0101", Fault::kBatteryLow}};
  link.OpenPort();
  for (const auto& row : cases) {
    SCOPED_TRACE(std::to_string(row.conditions) + " " + row.bits);
    dial_timer.Enabled(false);
    state.Main.DialReason.reset();
    state.Settings[kDialConditions] = row.conditions;
    Reply(row.bits);
    EXPECT_EQ(state.Main.DialReason, row.reason);
    EXPECT_EQ(dial_timer.Enabled(), row.reason.has_value());
  }
}

TEST_F(UpsLinkTest, WarningLineFollowsThePollByColour) {
  link.OpenPort();
  const Label& line = panel.supply_warning;
  const auto shown = [&] { return line.Visible() ? line.Caption() : std::string(); };
  std::string before;
  for (const auto& [bits, text] : {std::pair{"1010", state.Text(Message::kBypassWarning)},
                                   {"1000", state.Text(Message::kMainsWarning)},
                                   {"0000", ""}}) {
    SCOPED_TRACE(bits);
    Reply(bits);
    EXPECT_EQ(shown(), before);
    link.OnPoll();
    EXPECT_EQ(shown(), text);
    before = shown();
  }
}

TEST_F(UpsLinkTest, LinkChangeAsksForTheUpsData) {
  link.OpenPort();
  Reply("0000");
  Reply("0000");
  EXPECT_EQ(ups_port.Wire(), "MD\r");
  // A link that comes back takes down the warnings of before, inside the write of its caption.
  panel.link.Caption(state.Text(Message::kNotConnected));
  panel.link.ForeColor(kRed);
  panel.supply_warning.Visible(true);
  Reply("1000", "110");
  EXPECT_FALSE(panel.supply_warning.Visible());
  EXPECT_FALSE(panel.overload_warning.Visible());
  EXPECT_EQ(ups_port.Wire(), "MD\rMD\rMD\r");
  Reply("1000", "110");
  EXPECT_TRUE(panel.overload_warning.Visible());
  EXPECT_EQ(panel.overload_warning.Caption(), state.Text(Message::kOverloadWarning));
}

}  // namespace
}  // namespace orvane::test
