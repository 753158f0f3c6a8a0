#include <gtest/gtest.h>

#include "app/settings.h"
#include "link/ups_link.h"
#include "support/status_frame.h"
#include "support/world.h"

namespace orvane::test {
namespace {

class StatusEvaluationTest : public testing::Test, public World {
 protected:
  StatusEvaluationTest() {
    link.Attach();
    MSComm1.PortOpen(true);
    MSComm1.RThreshold(1);
    TimerDial.Interval(5000);
  }

  void Reply(const char* bits, const char* load = "035") {
    MSComm1.Receive(StatusFrame{.load = load, .bits = bits}.Text());
  }

  // The line that WriteLog makes of a message at the clock's start.
  static std::string Line(const std::string& message) {
    return "\"\n2001-02-16 9:05:33 " + message + "\"\r\n";
  }

  UpsLink link{state, panel, journals, seams};
};

struct LineCase {
  const char* bits;
  const char* mains;
  const char* battery;
  const char* bypass;
  const char* ups;
};

constexpr LineCase kLines[] = {
    {"0000", "Normal", "Normal", "On Line", "Normal"},
    {"1000", "Fail", "Normal", "On Line", "Normal"},
    {"0100", "Normal", "Low", "On Line", "Normal"},
    {"0010", "Normal", "Normal", "By Pass", "Normal"},
    {"0001", "Normal", "Normal", "On Line", "Fail"},
    {"1111", "Fail", "Low", "By Pass", "Fail"},
    {"2 x-", "Normal", "Normal", "On Line", "Normal"},
};

TEST_F(StatusEvaluationTest, BitsBecomeStateLines) {
  for (const LineCase& row : kLines) {
    SCOPED_TRACE(row.bits);
    Reply(row.bits);
    const std::pair<const Label*, const char*> lines[] = {{&panel.lblAc, row.mains},
                                                          {&panel.lblBatt, row.battery},
                                                          {&panel.lblBattIn, row.bypass},
                                                          {&panel.lblUps, row.ups}};
    for (int i = 0; i < 4; ++i) {
      EXPECT_EQ(lines[i].first->Caption(), lines[i].second);
      EXPECT_EQ(lines[i].first->ForeColor(), row.bits[i] == '1' ? kRed : kBlue);
    }
    EXPECT_EQ(panel.lblConnect.Caption(), "Conn");
    EXPECT_EQ(panel.lblConnect.ForeColor(), kBlue);
  }
}

TEST_F(StatusEvaluationTest, EachFaultIsLoggedOnceForEachEpisodeAndOnlyOnceSeenClear) {
  const std::string ac = "\"\n2001-02-16 09 1\"\r\n";
  const std::string low = "\"\n2001-02-16 09 2\"\r\n";
  struct Step {
    const char* bits;
    std::string log;  // what this reply adds
    std::string records;
  };
  const Step steps[] = {
      {"1101", "", ""},  // there from the start: shown, never logged
      {"0000", "", ""},
      {"1000", Line("AC fail"), ac},
      {"1000", "", ""},
      {"1100", Line("Batt. Low"), low},
      {"0101", Line("Batt. Low"), low},
      {"0000", "", ""},
      {"0101", Line("Batt. Low") + Line("Batt. Low"), low + low},
      {"1000", Line("AC fail"), ac},
      {"0010", "", ""},
  };
  for (const Step& step : steps) {
    SCOPED_TRACE(step.bits);
    const std::string log = Log(), records = DateRec();
    Reply(step.bits);
    EXPECT_EQ(Log(), log + step.log);
    EXPECT_EQ(DateRec(), records + step.records);
  }
}

TEST_F(StatusEvaluationTest, LostLineIsNotTriedAgain) {
  Reply("0000");
  disk.refuse_writes = true;
  Reply("1000");
  disk.refuse_writes = false;
  Reply("1000");
  EXPECT_EQ(Log(), "");
  EXPECT_EQ(panel.lblAc.Caption(), "Fail");
}

TEST_F(StatusEvaluationTest, CountRunsForAnyFaultAndIsClearedByMainsNormal) {
  struct Case {
    const char* bits;
    bool counts;
    bool cleared;
  };
  for (const Case& row :
       {Case{"1000", true, false}, Case{"0100", true, true}, Case{"0001", true, true},
        Case{"0010", false, true}, Case{"0000", false, true}, Case{"1111", true, false}}) {
    SCOPED_TRACE(row.bits);
    state.Main.AlertSeconds = 7;
    state.Main.AlertPeriods = 3;
    panel.Label13.Caption("counting");
    Reply(row.bits);
    EXPECT_EQ(Timer2.Enabled(), row.counts);
    EXPECT_EQ(state.Main.AlertSeconds, row.cleared ? 0 : 7);
    EXPECT_EQ(state.Main.AlertPeriods, row.cleared ? 0 : 3);
    EXPECT_EQ(panel.Label13.Caption(), row.cleared ? "Ready" : "counting");
  }
}

TEST_F(StatusEvaluationTest, DialConditions) {
  struct Case {
    std::int16_t conditions;
    const char* bits;
    int reason;  // 0: no dial asked
  };
  const Case cases[] = {
      {0, "1101", 0},   {100, "1000", 1}, {100, "0101", 0}, {10, "0100", 2},  {10, "1001", 0},
      {1, "0001", 3},   {1, "1100", 0},   {101, "1000", 1}, {101, "0100", 0}, {101, "0001", 3},
      {11, "1000", 0},  {11, "0100", 2},  {11, "1101", 3},  {111, "1101", 3}, {111, "1100", 2},
      {110, "1001", 1}, {200, "1000", 0}, {111, "0010", 0}, {-1, "1101", 0},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(std::to_string(row.conditions) + " " + row.bits);
    TimerDial.Enabled(false);
    state.Main.DialReason = 0;
    state.Settings[kDialConditions] = row.conditions;
    Reply(row.bits);
    EXPECT_EQ(state.Main.DialReason, row.reason);
    EXPECT_EQ(TimerDial.Enabled(), row.reason != 0);
  }
}

TEST_F(StatusEvaluationTest, OverloadFollowsTheLoad) {
  for (const auto& [load, shown] : {std::pair{"099", false}, std::pair{"100", true},
                                    std::pair{"130", true}, std::pair{"035", false}}) {
    SCOPED_TRACE(load);
    Reply("0000", load);
    EXPECT_EQ(panel.lblAlert[2].Visible(), shown);
  }
  Reply("0000", "100");
  EXPECT_EQ(panel.lblAlert[2].Caption(), "Warning!Overload!Ups and loads shall be spoiling.");
}

TEST_F(StatusEvaluationTest, WarningLineFollowsThePollByColour) {
  Reply("1010");
  EXPECT_FALSE(panel.lblAlert[1].Visible());
  link.Timer1_Timer();
  EXPECT_TRUE(panel.lblAlert[1].Visible());
  EXPECT_EQ(panel.lblAlert[1].Caption(), state.Message(34));
  EXPECT_EQ(panel.lblAc.Caption(), "Fail");
  Reply("1000");
  link.Timer1_Timer();
  EXPECT_EQ(panel.lblAlert[1].Caption(), state.Message(35));
  Reply("0000");
  EXPECT_TRUE(panel.lblAlert[1].Visible());
  link.Timer1_Timer();
  EXPECT_FALSE(panel.lblAlert[1].Visible());
}

TEST_F(StatusEvaluationTest, LinkChangeAsksForTheUpsData) {
  Reply("0000");
  EXPECT_EQ(MSComm1.Wire(), "MD\r");
  Reply("0000");
  EXPECT_EQ(MSComm1.Wire(), "MD\r");
  // A link that comes back takes down the warnings of before, inside the write of its caption.
  panel.lblConnect.Caption(state.Message(33));
  panel.lblConnect.ForeColor(kRed);
  EXPECT_EQ(MSComm1.Wire(), "MD\rMD\r");
  panel.lblAlert[1].Visible(true);
  Reply("1000", "110");
  EXPECT_FALSE(panel.lblAlert[1].Visible());
  EXPECT_FALSE(panel.lblAlert[2].Visible());
  EXPECT_EQ(MSComm1.Wire(), "MD\rMD\rMD\r");
  Reply("1000", "110");
  EXPECT_TRUE(panel.lblAlert[2].Visible());
}

struct MirrorCase {
  int index;
  const char* value;
  Label Panel::*figure;
  Bar Panel::*bar;
  float width;
};

constexpr MirrorCase kMirror[] = {
    {kInput, "230", &Panel::lblApcAc, &Panel::shpInput, 3327},
    {kOutput, "330", &Panel::lblApcOutput, &Panel::shpOutput, 4767},
    {kLoad, "100", &Panel::lblApcLoad, &Panel::shpLoad, 3185},
    {kBattery, "100", &Panel::lblApcBatt, &Panel::shpBatt, 4770},
    {kFrequency, "39.9", &Panel::lblApcFreq, &Panel::shpFreq, 15},
    {kFrequency, "40", &Panel::lblApcFreq, &Panel::shpFreq, 15},
    {kFrequency, "50", &Panel::lblApcFreq, &Panel::shpFreq, 1917},
    {kFrequency, "65", &Panel::lblApcFreq, &Panel::shpFreq, 4770},
    {kTemperature, "75", &Panel::lblApcTemp, &Panel::shpTemp, 4770},
    {kLoad, "160", &Panel::lblApcLoad, &Panel::shpLoad, 5087},
};

TEST_F(StatusEvaluationTest, ValuesAreMirroredToFiguresAndBars) {
  for (const MirrorCase& row : kMirror) {
    SCOPED_TRACE(row.value);
    panel.Label2[static_cast<std::size_t>(row.index)].Caption(row.value);
    EXPECT_EQ((panel.*row.figure).Caption(), row.value);
    EXPECT_FLOAT_EQ((panel.*row.bar).Width(), row.width);
  }
}

TEST_F(StatusEvaluationTest, OneChangedValueMirrorsAllSix) {
  MSComm1.Receive(StatusFrame{.temperature = "00.0"}.Text());
  EXPECT_EQ(panel.lblApcTemp.Caption(), "0");
  EXPECT_EQ(panel.lblApcFreq.Caption(), "50");
}

}  // namespace
}  // namespace orvane::test
