// The program's link and the simulated UPS, each held against the other.
#include "support/simulated_device.h"

#include <gtest/gtest.h>

#include "link/commands.h"
#include "link/ups_link.h"
#include "support/world.h"

namespace orvane::test {
namespace {

using namespace std::chrono_literals;

class SimulatedUpsTest : public testing::Test, public World {
 protected:
  SimulatedUpsTest() {
    link.Attach();
    MSComm1.PortOpen(true);
    MSComm1.RThreshold(1);
    Timer1.Interval(2000);
    Timer1.Tick = [this] { link.Timer1_Timer(); };
    Timer1.Enabled(true);
  }

  std::string Value(int index) const {
    return panel.Label2[static_cast<std::size_t>(index)].Caption();
  }

  UpsLink link{state, panel, journals, seams};
  SimulatedUps ups{time, MSComm1};
};

TEST_F(SimulatedUpsTest, TheLinkComesUpWithinTheFirstPoll) {
  time.Advance(2000ms);
  EXPECT_EQ(panel.lblConnect.ForeColor(), kRed);
  time.Advance(196ms);  // the reply's way on the line
  EXPECT_EQ(panel.lblConnect.Caption(), "Conn");
  EXPECT_EQ(Value(kInput), "230");
  EXPECT_EQ(Value(kBattery), "100");
  time.Advance(1s);
  EXPECT_EQ(panel.Label7[1].Caption(), "UPS Simulator");
  EXPECT_EQ(panel.Label7[4].Caption(), "700W");
}

TEST_F(SimulatedUpsTest, WhatHappensToTheUpsIsSeen) {
  time.Advance(3s);
  ups.Do([](UpsModel& model) {
    model.Mains(false);
    model.Load(110);
    model.Battery(20);
  });
  time.Advance(2s);
  EXPECT_EQ(panel.lblAc.Caption(), "Fail");
  EXPECT_EQ(panel.lblBatt.Caption(), "Low");
  EXPECT_EQ(panel.lblBattIn.Caption(), "On Line");
  EXPECT_EQ(panel.lblUps.Caption(), "Normal");
  EXPECT_TRUE(panel.lblAlert[2].Visible());
  EXPECT_EQ(Value(kBattery), "20");
  ups.Do([](UpsModel& model) { model.Mains(true); });
  time.Advance(2s);
  EXPECT_EQ(panel.lblAc.Caption(), "Normal");
}

TEST_F(SimulatedUpsTest, ShutdownEndsTheLinkAndTheMainsBringItBack) {
  time.Advance(3s);
  SendCommand(MSComm1, "S.5");
  time.Advance(29s);
  EXPECT_EQ(panel.lblConnect.Caption(), "Conn");
  time.Advance(11s);
  EXPECT_EQ(panel.lblConnect.Caption(), "No conn");
  EXPECT_FALSE(ups.Now().OutputOn());
  ups.Do([](UpsModel& model) {
    model.Mains(false);
    model.Mains(true);
  });
  time.Advance(3s);
  EXPECT_EQ(panel.lblConnect.Caption(), "Conn");
}

TEST_F(SimulatedUpsTest, TheLinkHoldsThroughPiecesAndNoise) {
  time.Advance(3s);
  ups.Do([](UpsModel& model) {
    model.Split(true);
    model.Noise(true);
  });
  for (int poll = 0; poll < 60; ++poll) {
    time.Advance(2s);
    ASSERT_EQ(panel.lblConnect.Caption(), "Conn") << poll;
    ASSERT_EQ(panel.lblAc.Caption(), "Normal") << poll;
  }
  EXPECT_EQ(Log(), "");
}

}  // namespace
}  // namespace orvane::test
