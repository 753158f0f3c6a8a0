#include "frame/main_form.h"

#include <gtest/gtest.h>

#include "schedule/schedule_tables.h"
#include "support/memory_history.h"
#include "support/status_frame.h"
#include "support/world.h"

namespace orvane::test {
namespace {

class MainFormTest : public testing::Test, public World {
 protected:
  MainFormTest() {
    forms.open = {Form::kMain};
    forms.OnUnload = [this](Form) { form.Unload(); };
    forms.OnLoad = [this](Form) { ASSERT_TRUE(form.Load()); };
  }

  static std::string Line(const char* message) {
    return std::string("\"\n2001-02-16 9:05:33 ") + message + "\"\r\n";
  }

  StatusFrame status;
  MainForm form{state, panel, seams};
};

TEST_F(MainFormTest, LoadReadsSettingsSpeaksTheLanguageAndOpensThePort) {
  disk.files["/prog/Orvane.ini"] = "2,30,0,5,0,2,30,1,3,110,\"119\",1\r\n";
  ASSERT_TRUE(form.Load());
  EXPECT_EQ(state.ShutdownCommand, "S01");
  EXPECT_EQ(state.ShutdownCountdown, 0);
  EXPECT_EQ(panel.port_line.Caption(), "UPS安装在：COM2");
  EXPECT_EQ(panel.exit_entry.Text(), "离开Orvane(&E)");
  EXPECT_EQ(Log(), Line("本程式启动"));
  EXPECT_FALSE(countdown_timer.Enabled() || dial_timer.Enabled());
  // The captions were written before the port was open, so nothing went out.
  EXPECT_EQ(ups_port.Wire(), "");
  time.Advance(std::chrono::milliseconds(2000));
  EXPECT_EQ(ups_port.Wire(), "Q1\r");
  EXPECT_EQ(panel.clock.Caption(), "2001-02-16 9:05:35");
}

TEST_F(MainFormTest, SecondInstanceIsTurnedAwayWithoutATrace) {
  host.previous_instance = true;
  // A switch-off time of today, Friday, falls due while the box stands.
  state.ScheduleEnable[5] = '1';
  state.ScheduleOff[5] = "9:10";
  dialogs.OnBox = [this] { time.Advance(std::chrono::minutes(10)); };
  EXPECT_FALSE(form.Load());
  EXPECT_EQ(events, Events{"Exclamation [Orvane：Info] Orvane Have been run！"});
  // The first one may have ended meanwhile.
  host.previous_instance = false;
  form.Unload();
  EXPECT_TRUE(disk.files.empty());
  EXPECT_FALSE(ups_port.IsOpen());
}

TEST_F(MainFormTest, SystemThatGoesDownBehindABoxOfTheLoadLeavesTheFormHidden) {
  ASSERT_TRUE(form.Load());
  ups_port.Close();
  ups_port.present = {};
  state.ScheduleEnable[5] = '1';
  state.ScheduleOff[5] = "9:06";
  dialogs.OnBox = [this] { time.Advance(std::chrono::minutes(1)); };
  form.Reload();
  EXPECT_TRUE(form.GoingDown());
  EXPECT_EQ(events.back(), "Hide main");
}

TEST_F(MainFormTest, UnloadClosesBothPortsAndNothingHappensAfterIt) {
  for (const bool port : {true, false}) {
    disk.files.clear();
    ups_port.sent.clear();
    if (!port) ups_port.present = {};
    ASSERT_TRUE(form.Load());
    form.Activate();
    EXPECT_EQ(ups_port.IsOpen(), port);
    // A delay of 0: each second of the count would end in a shutdown.
    ups_port.Receive(StatusFrame{.bits = "1000"}.Text());
    EXPECT_EQ(countdown_timer.Enabled(), port);
    modem_port.Open();
    for (int i = 0; i < 2; ++i) form.Unload();
    ups_port.present = {1};
    const std::size_t sent = ups_port.sent.size();
    time.Advance(std::chrono::hours(1));
    form.Activate();
    EXPECT_FALSE(ups_port.IsOpen());
    EXPECT_FALSE(modem_port.IsOpen());
    EXPECT_EQ(ups_port.sent.size(), sent);
    EXPECT_EQ(Log(), Line("Program start") + Line("Program end"));
    time.SetWall({2001, 2, 16, 9, 5, 33});
  }
}

TEST_F(MainFormTest, SleepLetsGoOfThePortAndIsNoOutage) {
  disk.files["/prog/Orvane.ini"] = "0,10,0\r\n";
  ASSERT_TRUE(form.Load());
  form.Activate();
  ups_port.OnSent = [this](const std::string& text) {
    if (text == "Q1\r") ups_port.Receive(StatusFrame{.bits = "1000"}.Text());
  };
  time.Advance(std::chrono::seconds(12));
  ASSERT_EQ(state.ShutdownCountdown, 590);
  EXPECT_TRUE(host.kept_awake);
  for (int i = 0; i < 2; ++i) host.Sleep(true);
  EXPECT_FALSE(ups_port.IsOpen());
  const std::size_t sent = ups_port.sent.size();
  time.Advance(std::chrono::seconds(4));
  EXPECT_EQ(ups_port.sent.size(), sent);
  time.Jump(std::chrono::hours(8));
  // The device is back a little later than the computer.
  ups_port.present = {};
  host.Sleep(false);
  ups_port.present = {1};
  time.Advance(std::chrono::seconds(4));
  EXPECT_TRUE(ups_port.IsOpen());
  EXPECT_EQ(panel.link.ForeColor(), kBlue);
  EXPECT_EQ(state.ShutdownCountdown, 581);
  ups_port.OnSent = nullptr;
  ups_port.Receive(StatusFrame{}.Text());
  EXPECT_FALSE(host.kept_awake);
}

TEST_F(MainFormTest, SleepStartsNoPollOnAPortThatCouldNotBeOpened) {
  ups_port.present = {};
  ASSERT_TRUE(form.Load());
  host.Sleep(true);
  ups_port.present = {1, 2, 3, 4};
  host.Sleep(false);
  time.Advance(std::chrono::seconds(10));
  EXPECT_FALSE(ups_port.IsOpen());
}

TEST_F(MainFormTest, ClockGoesWithThePollsWhereNobodyLooks) {
  ASSERT_TRUE(form.Load());
  int changes = 0;
  panel.clock.Observer = [&] { ++changes; };
  const auto changes_in = [&](int seconds) {
    changes = 0;
    time.Advance(std::chrono::seconds(seconds));
    return changes;
  };
  form.Watched(false);
  EXPECT_EQ(changes_in(20), 10);
  EXPECT_FALSE(clock_timer.Enabled() || schedule_timer.Enabled());
  form.SaveSchedule(kWeekly, {{{"1", "8:00", "", ""}}});
  EXPECT_TRUE(schedule_timer.Enabled());
  time.Advance(std::chrono::milliseconds(1500));
  form.Watched(true);
  EXPECT_EQ(panel.clock.Caption(), "2001-02-16 9:05:54");
  EXPECT_EQ(changes_in(20), 20);
  // Without a port there are no polls to go with.
  form.Watched(false);
  host.Sleep(true);
  time.Advance(std::chrono::seconds(10));
  EXPECT_EQ(changes_in(20), 20);
}

TEST_F(MainFormTest, RepliesWaitForTheActivationAndAReloadStartsAfresh) {
  ASSERT_TRUE(form.Load());
  ups_port.Receive(StatusFrame{.bits = "1000"}.Text());
  EXPECT_EQ(panel.mains.Caption(), "");
  form.Activate();
  EXPECT_EQ(panel.mains.Caption(), "Fail");
  form.ShowDials();
  disk.files["/prog/Orvane.ini"] = "3,0\r\n";
  form.Reload();
  EXPECT_EQ(Log(), Line("Program start") + Line("Program end") + Line("Program start"));
  EXPECT_EQ(ups_port.Number(), 3);
  EXPECT_TRUE(ups_port.IsOpen());
  EXPECT_TRUE(panel.bar_face.Visible());
  EXPECT_EQ(panel.mains.Caption(), "");
  EXPECT_EQ(panel.read_outs[Gauge::kInput].Caption(), "0");
  EXPECT_FALSE(countdown_timer.Enabled());
  EXPECT_FALSE(state.Main.EventArmed[Fault::kBatteryLow]);
}

TEST_F(MainFormTest, SelfTestsOfTheScheduleAndTheWayDownAreEpisodes) {
  MemoryHistory history;
  form.KeepHistory(history);
  forms.OnUnload = nullptr;  // the alert goes as well
  ups_port.OnSent = [this](const std::string& text) {
    if (text == "Q1\r") ups_port.Receive(status.Text());
  };
  ASSERT_TRUE(form.Load());
  form.Activate();
  // A minute and more, in which the schedule gives its command time and again.
  state.ScheduleEnable[kSelfTests.on_slots + 1] = '1';
  state.ScheduleDate[*kSelfTests.date_slots + 1] = "2001-2-16";
  state.ScheduleOn[kSelfTests.on_slots + 1] = "9:06";
  time.Advance(std::chrono::minutes(3));
  ASSERT_EQ(history.episodes.size(), 1U);
  EXPECT_EQ(history.episodes[1].kind, EpisodeKind::kSelfTest);
  // A UPS that tells nothing of its end has four hours for it.
  time.Advance(std::chrono::minutes(237));
  EXPECT_EQ(history.episodes[1].ending, Ending::kNotYet);
  time.Advance(std::chrono::minutes(2));
  EXPECT_EQ(history.episodes[1].ending, Ending::kOver);
  status.bits = "1000";
  time.Advance(std::chrono::seconds(20));

  dialogs.answer = true;
  form.AskForShutdown();
  ASSERT_EQ(history.episodes.size(), 3U);
  EXPECT_EQ(history.episodes[2].kind, EpisodeKind::kMainsFailure);
  EXPECT_EQ(history.episodes[2].ending, Ending::kShutdown);
  EXPECT_EQ(history.episodes[3].kind, EpisodeKind::kWayDown);
  form.Unload();
  EXPECT_EQ(history.episodes[3].ending, Ending::kOver);
}

}  // namespace
}  // namespace orvane::test
