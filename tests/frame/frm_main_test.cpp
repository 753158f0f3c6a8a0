#include "frame/frm_main.h"

#include <gtest/gtest.h>

#include "support/status_frame.h"
#include "support/world.h"

namespace orvane::test {
namespace {

class FrmMainTest : public testing::Test, public World {
 protected:
  FrmMainTest() {
    forms.open = {Form::frmMain};
    forms.OnUnload = [this](Form) { form.Form_QueryUnload(); };
    forms.OnLoad = [this](Form) { ASSERT_TRUE(form.Form_Load()); };
  }

  static std::string Line(const char* message) {
    return std::string("\"\n2001-02-16 9:05:33 ") + message + "\"\r\n";
  }

  FrmMain form{state, panel, seams};
};

TEST_F(FrmMainTest, LoadReadsSettingsSpeaksTheLanguageAndOpensThePort) {
  disk.files["/prog/Orvane.ini"] = "2,30,0,5,0,2,30,1,3,110,\"119\",1\r\n";
  ASSERT_TRUE(form.Form_Load());
  EXPECT_EQ(state.ShutdownCommand, "S01");
  EXPECT_EQ(state.ShutdownCountdown, 0);
  EXPECT_EQ(panel.Label14.Caption(), "UPS安装在：COM2");
  EXPECT_EQ(panel.mnuExit.Text(), "离开Orvane(&E)");
  EXPECT_EQ(Log(), Line("本程式启动"));
  EXPECT_FALSE(Timer2.Enabled() || TimerDial.Enabled());
  // The captions were written before the port was open, so nothing went out.
  EXPECT_EQ(MSComm1.Wire(), "");
  time.Advance(std::chrono::milliseconds(2000));
  EXPECT_EQ(MSComm1.Wire(), "Q1\r");
  EXPECT_EQ(panel.Label15.Caption(), "2001-02-16 9:05:35");
}

TEST_F(FrmMainTest, SecondInstanceIsTurnedAwayWithoutATrace) {
  host.previous_instance = true;
  // A switch-off time of today, Friday, falls due while the box stands.
  state.ScheduleEnable[5] = '1';
  state.ScheduleOff[5] = "9:10";
  dialogs.OnBox = [this] { time.Advance(std::chrono::minutes(10)); };
  EXPECT_FALSE(form.Form_Load());
  EXPECT_EQ(events, Events{"Exclamation [Orvane：Info] Orvane Have been run！"});
  // The first one may have ended meanwhile.
  host.previous_instance = false;
  form.Form_QueryUnload();
  EXPECT_TRUE(disk.files.empty());
  EXPECT_FALSE(MSComm1.PortOpen());
}

TEST_F(FrmMainTest, SystemThatGoesDownBehindABoxOfTheLoadLeavesTheFormHidden) {
  ASSERT_TRUE(form.Form_Load());
  MSComm1.PortOpen(false);
  MSComm1.present = {};
  state.ScheduleEnable[5] = '1';
  state.ScheduleOff[5] = "9:06";
  dialogs.OnBox = [this] { time.Advance(std::chrono::minutes(1)); };
  form.Reload();
  EXPECT_TRUE(form.GoingDown());
  EXPECT_EQ(events.back(), "Hide frmMain");
}

TEST_F(FrmMainTest, RepliesWaitForTheActivation) {
  ASSERT_TRUE(form.Form_Load());
  MSComm1.Receive(StatusFrame{}.Text());
  EXPECT_EQ(panel.lblAc.Caption(), "");
  form.Form_Activate();
  EXPECT_EQ(panel.lblAc.Caption(), "Normal");
}

TEST_F(FrmMainTest, UnloadClosesBothPortsAndNothingHappensAfterIt) {
  for (const bool port : {true, false}) {
    disk.files.clear();
    MSComm1.sent.clear();
    if (!port) MSComm1.present = {};
    ASSERT_TRUE(form.Form_Load());
    form.Form_Activate();
    EXPECT_EQ(MSComm1.PortOpen(), port);
    // A delay of 0: each second of the count would end in a shutdown.
    MSComm1.Receive(StatusFrame{.bits = "1000"}.Text());
    EXPECT_EQ(Timer2.Enabled(), port);
    MSComm2.PortOpen(true);
    for (int i = 0; i < 2; ++i) form.Form_QueryUnload();
    MSComm1.present = {1};
    const std::size_t sent = MSComm1.sent.size();
    time.Advance(std::chrono::hours(1));
    form.Form_Activate();
    EXPECT_FALSE(MSComm1.PortOpen());
    EXPECT_FALSE(MSComm2.PortOpen());
    EXPECT_EQ(MSComm1.sent.size(), sent);
    EXPECT_EQ(Log(), Line("Program start") + Line("Program end"));
    time.SetWall({2001, 2, 16, 9, 5, 33});
  }
}

TEST_F(FrmMainTest, SleepLetsGoOfThePortAndIsNoOutage) {
  disk.files["/prog/Orvane.ini"] = "0,10,0\r\n";
  ASSERT_TRUE(form.Form_Load());
  form.Form_Activate();
  MSComm1.OnSent = [this](const std::string& text) {
    if (text == "Q1\r") MSComm1.Receive(StatusFrame{.bits = "1000"}.Text());
  };
  time.Advance(std::chrono::seconds(12));
  ASSERT_EQ(state.ShutdownCountdown, 590);
  EXPECT_TRUE(host.kept_awake);
  for (int i = 0; i < 2; ++i) host.Sleep(true);
  EXPECT_FALSE(MSComm1.PortOpen());
  const std::size_t sent = MSComm1.sent.size();
  time.Advance(std::chrono::seconds(4));
  EXPECT_EQ(MSComm1.sent.size(), sent);
  time.Jump(std::chrono::hours(8));
  // The device is back a little later than the computer.
  MSComm1.present = {};
  host.Sleep(false);
  MSComm1.present = {1};
  time.Advance(std::chrono::seconds(4));
  EXPECT_TRUE(MSComm1.PortOpen());
  EXPECT_EQ(panel.lblConnect.ForeColor(), kBlue);
  EXPECT_EQ(state.ShutdownCountdown, 581);
  MSComm1.OnSent = nullptr;
  MSComm1.Receive(StatusFrame{}.Text());
  EXPECT_FALSE(host.kept_awake);
}

TEST_F(FrmMainTest, SleepStartsNoPollOnAPortThatCouldNotBeOpened) {
  MSComm1.present = {};
  ASSERT_TRUE(form.Form_Load());
  host.Sleep(true);
  MSComm1.present = {1, 2, 3, 4};
  host.Sleep(false);
  time.Advance(std::chrono::seconds(10));
  EXPECT_FALSE(MSComm1.PortOpen());
}

TEST_F(FrmMainTest, ReloadStartsTheFormAfresh) {
  ASSERT_TRUE(form.Form_Load());
  form.Form_Activate();
  MSComm1.Receive(StatusFrame{.bits = "1000"}.Text());
  form.picAPC_DblClick();
  disk.files["/prog/Orvane.ini"] = "3,0\r\n";
  form.Reload();
  EXPECT_EQ(Log(), Line("Program start") + Line("Program end") + Line("Program start"));
  EXPECT_EQ(MSComm1.CommPort(), 3);
  EXPECT_TRUE(MSComm1.PortOpen());
  EXPECT_TRUE(panel.picAPC.Visible());
  EXPECT_EQ(panel.lblAc.Caption(), "");
  EXPECT_EQ(panel.Label2[kInput].Caption(), "0");
  EXPECT_FALSE(Timer2.Enabled());
  EXPECT_FALSE(state.Main.EventArmed[kBatteryLow]);
}

}  // namespace
}  // namespace orvane::test
