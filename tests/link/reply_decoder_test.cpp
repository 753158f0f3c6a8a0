#include <gtest/gtest.h>

#include "app/gauges.h"
#include "link/ups_link.h"
#include "support/status_frame.h"
#include "support/world.h"

namespace orvane::test {
namespace {

class ReplyDecoderTest : public testing::Test, public World {
 protected:
  ReplyDecoderTest() {
    link.Attach();
    MSComm1.PortOpen(true);
    MSComm1.RThreshold(1);
    CaptureNeedles(panel, state.Main);
  }

  // The needle stands where SetGauge puts it for `value`.
  bool GaugeStandsAt(int index, std::int16_t value) {
    Panel other;
    SetGauge(state.Main, other, index, value);
    const auto i = static_cast<std::size_t>(index);
    return panel.Line1[i].Line() == other.Line1[i].Line();
  }

  UpsLink link{state, panel, journals, seams};
};

struct ValueCase {
  const char* name;
  StatusFrame frame;
  int index;
  const char* caption;
  std::int16_t gauge;
};

TEST_F(ReplyDecoderTest, ValuesGoToCaptionsAndGauges) {
  const ValueCase cases[] = {
      {"input", {.input = "231.4"}, kInput, "231.4", 231},
      {"input whole", {.input = "230.0"}, kInput, "230", 230},
      {"input below the scale", {.input = "199.9"}, kInput, "199.9", 200},
      {"input above the scale", {.input = "250.1"}, kInput, "250.1", 250},
      {"input doubled", {.input = "110.0", .output = "110.0"}, kInput, "220", 220},
      {"output doubled in the caption alone", {.output = "110.0"}, kOutput, "220", 200},
      {"output just under the limit", {.output = "149.9"}, kOutput, "299.8", 200},
      {"output at the limit", {.output = "150.0"}, kOutput, "150", 200},
      {"output half goes to even, down", {.output = "220.5"}, kOutput, "220.5", 220},
      {"output half goes to even, up", {.output = "221.5"}, kOutput, "221.5", 222},
      {"load", {.load = "035"}, kLoad, "35", 35},
      {"load beyond the scale", {.load = "126"}, kLoad, "126", 125},
      {"load in blanks", {.load = " 7 "}, kLoad, "7", 7},
      {"battery half", {.battery = "2.00"}, kBattery, "51", 51},
      {"battery top of the scale", {.battery = "2.27"}, kBattery, "100", 100},
      {"battery bottom of the scale", {.battery = "1.72"}, kBattery, "0", 0},
      {"battery above", {.battery = "2.30"}, kBattery, "100", 100},
      {"battery below", {.battery = "1.60"}, kBattery, "0", 0},
      {"frequency", {.frequency = "50.1"}, kFrequency, "50.1", 50},
      {"frequency below", {.frequency = "29.0"}, kFrequency, "29", 30},
      {"frequency above", {.frequency = "80.6"}, kFrequency, "80.6", 80},
      {"temperature", {.temperature = "25.0"}, kTemperature, "25", 25},
      {"temperature below", {.temperature = "-9.5"}, kTemperature, "-9.5", 0},
      {"temperature minus nought", {.temperature = "-0.0"}, kTemperature, "0", 0},
      {"temperature above", {.temperature = "99.9"}, kTemperature, "99.9", 75},
  };
  for (const ValueCase& row : cases) {
    SCOPED_TRACE(row.name);
    MSComm1.Receive(row.frame.Text());
    EXPECT_EQ(panel.Label2[static_cast<std::size_t>(row.index)].Caption(), row.caption);
    EXPECT_TRUE(GaugeStandsAt(row.index, row.gauge));
  }
}

TEST_F(ReplyDecoderTest, BadFieldLeavesItsCaptionAndTakesTheFirstBranch) {
  // What a good reply of 233 V, 232 V, 35 %, 2.00, 51.0 Hz, 26.0 degrees left behind.
  const StatusFrame good{.input = "233.0",
                         .output = "232.0",
                         .load = "035",
                         .frequency = "51.0",
                         .battery = "2.00",
                         .temperature = "26.0"};
  struct Case {
    const char* name;
    StatusFrame frame;
    int index;
    const char* caption;
    std::int16_t gauge;
  };
  const auto with = [&](auto member, const char* text) {
    StatusFrame changed = good;
    changed.*member = text;
    return changed;
  };
  const Case cases[] = {
      {"input", with(&StatusFrame::input, "?????"), kInput, "233", 233},
      {"output, its own caption", with(&StatusFrame::output, "     "), kOutput, "232", 250},
      {"output, the input doubled", with(&StatusFrame::output, "2x2.0"), kInput, "466", 250},
      {"output, twice it no number", with(&StatusFrame::output, "-3e38"), kOutput, "232", 200},
      {"load", with(&StatusFrame::load, "---"), kLoad, "35", 125},
      {"battery", with(&StatusFrame::battery, "2,00"), kBattery, "100", 100},
      {"frequency", with(&StatusFrame::frequency, "nan "), kFrequency, "51", 80},
      {"temperature", with(&StatusFrame::temperature, "1.2."), kTemperature, "26", 75},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.name);
    MSComm1.Receive(good.Text());
    MSComm1.Receive(row.frame.Text());
    EXPECT_EQ(panel.Label2[static_cast<std::size_t>(row.index)].Caption(), row.caption);
    EXPECT_TRUE(GaugeStandsAt(row.index, row.gauge));
    EXPECT_EQ(panel.lblConnect.Caption(), "Conn");
  }
  MSComm1.Receive(with(&StatusFrame::load, "abc").Text());
  EXPECT_TRUE(panel.lblAlert[2].Visible());
}

TEST_F(ReplyDecoderTest, ShapeDecidesWhatIsDecoded) {
  const std::string whole = StatusFrame{}.Text();
  struct Case {
    const char* name;
    std::string text;
    bool decoded;
  };
  const Case cases[] = {
      {"46 characters", whole.substr(0, 46), false},
      {"47 characters", whole.substr(0, 46) + "x", true},
      {"garbage in front", "x" + whole, false},
      {"NULs in the columns that are not read",
       [&] {
         std::string text = whole;
         text.replace(6, 7, 7, '\0');
         return text;
       }(),
       true},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.name);
    state.Main.RxText.clear();
    state.Main.PollsSent = 3;
    state.Main.PollsAnswered = 0;
    MSComm1.Receive(row.text);
    EXPECT_EQ(state.Main.PollsAnswered, row.decoded ? 3 : 0);
    EXPECT_EQ(state.Main.RxText.empty(), row.decoded);
  }
}

TEST_F(ReplyDecoderTest, PiecesDecodeOnceWhole) {
  const std::string whole = StatusFrame{.load = "042"}.Text();
  for (std::size_t cut = 1; cut < whole.size(); ++cut) {
    SCOPED_TRACE(cut);
    state.Main.RxText.clear();
    panel.Label2[kLoad].Caption("0");
    MSComm1.Receive(whole.substr(0, cut));
    EXPECT_EQ(panel.Label2[kLoad].Caption(), cut > 46 ? "42" : "0");
    MSComm1.Receive(whole.substr(cut));
    EXPECT_EQ(panel.Label2[kLoad].Caption(), "42");
  }
}

TEST_F(ReplyDecoderTest, InformationReply) {
  MSComm1.Receive(" OV-1000 ,700, 2.1,220,x,8 , 12,y,z\r");
  EXPECT_EQ(panel.Label7[0].Caption(), "8");
  EXPECT_EQ(panel.Label7[1].Caption(), "OV-1000");
  EXPECT_EQ(panel.Label7[2].Caption(), "2.1");
  EXPECT_EQ(panel.Label7[3].Caption(), "220V");
  EXPECT_EQ(panel.Label7[4].Caption(), "700W");
  EXPECT_EQ(panel.Label7[5].Caption(), "12V");
  // It answers a poll but brings no link up.
  EXPECT_EQ(panel.lblConnect.ForeColor(), kRed);
}

TEST_F(ReplyDecoderTest, InformationByCommasAndLength) {
  struct Case {
    const char* name;
    const char* text;
    bool decoded;
  };
  const Case cases[] = {
      {"29 characters", "OV,700,2.1,220,x,8,12,y,zzzzz", false},
      {"30 characters", "OV,700,2.1,220,x,8,12,y,zzzzzz", true},
      {"7 commas", "OV,700,2.1,220,x,8,12,y zzzzzzzzz", false},
      {"9 commas", "OV,700,2.1,220,x,8,12,y,z,zzzzzzz", false},
      {"empty fields", ",,,,,,,,22222222222222222222222", true},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.name);
    state.Main.RxText.clear();
    panel.Label7[1].Caption("UnKnown");
    MSComm1.Receive(row.text);
    EXPECT_EQ(panel.Label7[1].Caption() != "UnKnown", row.decoded);
  }
}

TEST_F(ReplyDecoderTest, OnlyReceivedDataIsRead) {
  state.Main.PollsSent = 5;
  MSComm1.RThreshold(0);
  MSComm1.Receive(StatusFrame{}.Text());
  link.MSComm1_OnComm();
  EXPECT_EQ(state.Main.PollsAnswered, 0);
  MSComm1.RThreshold(1);
  EXPECT_EQ(state.Main.PollsAnswered, 5);
}

}  // namespace
}  // namespace orvane::test
