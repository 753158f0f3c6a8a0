#include "check/protection_check.h"

#include <gtest/gtest.h>

#include "app/settings.h"
#include "check/port_trial.h"
#include "support/running_program.h"
#include "support/status_frame.h"

namespace orvane::test {
namespace {

struct ProtectionCheckTest : testing::Test, RunningProgram {
  ProtectionCheckTest() : RunningProgram(Language::kEnglish) {}

  Grade GradeOf(CheckPoint point) {
    return form.Check().Rows().at(static_cast<std::size_t>(point)).grade;
  }
};

TEST_F(ProtectionCheckTest, ShieldFollowsTheUps) {
  Start();
  EXPECT_EQ(panel.shield.Worst(), Grade::kAttention);
  EXPECT_EQ(panel.shield.Summary(), "1 point needs attention");
  Polls(2);
  EXPECT_EQ(panel.shield.Worst(), Grade::kReady);
  EXPECT_EQ(panel.shield.Points(), 0);
  int changes = 0;
  form.Check().Observer = [&] { ++changes; };
  Polls(30);
  EXPECT_EQ(changes, 0);
  silent = true;
  Polls(5);
  EXPECT_EQ(panel.shield.Summary(), "Not ready: 1 point");
  EXPECT_EQ(changes, 1);
  // One that never answered is given time.
  form.Reload();
  EXPECT_EQ(GradeOf(CheckPoint::kUps), Grade::kNotReady);
  form.Unload();
  Start();
  EXPECT_EQ(GradeOf(CheckPoint::kUps), Grade::kAttention);
  Polls(3);
  EXPECT_EQ(GradeOf(CheckPoint::kUps), Grade::kAttention);
  Polls(1);
  EXPECT_EQ(GradeOf(CheckPoint::kUps), Grade::kNotReady);
}

TEST_F(ProtectionCheckTest, AsksAtTheStartEveryDayAndWhenSettingsAreSaved) {
  Start();
  EXPECT_EQ(inspector.asked, 0);
  Poll();
  EXPECT_EQ(inspector.asked, 1);
  time.Jump(std::chrono::hours(24) - std::chrono::seconds(20));
  time.Advance(std::chrono::seconds(10));
  EXPECT_EQ(inspector.asked, 1);
  time.Advance(std::chrono::seconds(20));
  EXPECT_EQ(inspector.asked, 2);
  time.SetWall({2026, 3, 1, 0, 0, 0});
  time.Advance(std::chrono::seconds(10));
  EXPECT_EQ(inspector.asked, 3);
  form.SaveSettings({state.Settings, state.PhoneCode});
  EXPECT_EQ(inspector.asked, 4);
  inspector.found.blockers = "apt";
  inspector.Answer();
  EXPECT_EQ(GradeOf(CheckPoint::kBlockers), Grade::kAttention);
}

TEST_F(ProtectionCheckTest, PortsAndSettingsAreLookedAt) {
  ups_port.present.clear();
  disk.files["/prog/Orvane.ini"] = "1,10,0,2,x";
  Start();
  EXPECT_EQ(GradeOf(CheckPoint::kPort), Grade::kNotReady);
  EXPECT_EQ(GradeOf(CheckPoint::kSettings), Grade::kAttention);
  ups_port.present = {1, 2};
  disk.files["/prog/Orvane.ini"] = "0,10,0,2,0,2,30,3,1,0,\"\",0\r\n";
  silent = true;
  form.Unload();
  Start();
  Poll();
  EXPECT_EQ(GradeOf(CheckPoint::kSettings), Grade::kReady);
  EXPECT_EQ(GradeOf(CheckPoint::kPort), Grade::kAttention);
  disk.files.erase("/prog/Orvane.ini");
  form.Check().Ask();
  EXPECT_EQ(GradeOf(CheckPoint::kSettings), Grade::kNotReady);
}

TEST_F(ProtectionCheckTest, TrayTellsTheStateAndTheSecondsLeft) {
  struct Row {
    const char* bits;
    TrayFace face;
    const char* tip;
  };
  const Row rows[] = {
      {"0000", TrayFace::kMains, "Orvane: mains normal"},
      {"0001", TrayFace::kFault, "Orvane: UPS fault"},
      {"0100", TrayFace::kFault, "Orvane: battery low"},
      {"0000", TrayFace::kMains, "Orvane: mains normal"},
      {"1000", TrayFace::kBattery, "Orvane: mains failure, 600 s left"},
      {"1001", TrayFace::kBattery, "Orvane: mains failure, 598 s left"},
      {"1100", TrayFace::kBattery, "Orvane: battery low, 120 s left"},
      {"1100", TrayFace::kBattery, "Orvane: battery low, 118 s left"},
  };
  Start();
  EXPECT_EQ(panel.tray.Tip(), "Orvane: the UPS does not answer");
  for (const Row& row : rows) {
    status.bits = row.bits;
    Poll();
    EXPECT_EQ(panel.tray.Tip(), row.tip);
    EXPECT_EQ(panel.tray.Face(), row.face);
  }
  silent = true;
  Polls(4);
  EXPECT_EQ(panel.tray.Face(), TrayFace::kSilent);
  silent = false;
  Polls(100);
  ASSERT_TRUE(form.GoingDown());
  EXPECT_EQ(panel.tray.Tip(), "Orvane: the computer goes down");
}

struct TrialCase {
  int port;  // of the settings
  std::set<int> present;
  int answering;
  bool calls;  // by the modem on port 2
  int opened;
  bool answered;
  const char* wire;
};

TEST(PortTrialTest, AsksOnThePortsOfTheSettings) {
  const TrialCase cases[] = {
      {1, {1, 2}, 1, false, 1, true, "Q1\r"},
      {1, {1, 2}, 2, false, 1, false, "Q1\rQ1\rQ1\r"},
      {3, {1, 2}, 1, false, 0, false, ""},
      {0, {1, 2, 3}, 3, false, 3, true, "Q1\rQ1\rQ1\rQ1\rQ1\rQ1\rQ1\r"},
      {0, {1, 2, 3}, 3, true, 3, true, "Q1\rQ1\rQ1\rQ1\r"},
      {0, {}, 3, false, 0, false, ""},
  };
  for (const TrialCase& row : cases) {
    World world;
    world.state.Settings[kUpsPort] = static_cast<std::int16_t>(row.port);
    world.state.Settings[kModemPort] = 2;
    world.state.Settings[kDialConditions] = row.calls ? 100 : 0;
    world.ups_port.present = row.present;
    world.ups_port.OnSent = [&](const std::string&) {
      world.ups_port.Receive("noise\r");
      if (world.ups_port.Number() == row.answering) world.ups_port.Receive(StatusFrame().Text());
    };
    PortTrial trial(world.state, world.ups_port, world.poll_timer);
    int ends = 0;
    trial.Begin([&] { ++ends; });
    world.time.Advance(std::chrono::seconds(20));
    EXPECT_EQ(ends, 1);
    EXPECT_EQ(trial.Opened(), row.opened);
    EXPECT_EQ(trial.Answered(), row.answered);
    EXPECT_EQ(world.ups_port.Wire(), row.wire);
    EXPECT_FALSE(world.ups_port.IsOpen());
  }
}

}  // namespace
}  // namespace orvane::test
