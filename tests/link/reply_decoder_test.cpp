#include <gtest/gtest.h>

#include "app/gauges.h"
#include "link/ups_link.h"
#include "support/status_frame.h"
#include "support/world.h"

namespace orvane::test {
namespace {

using Texts = PerGauge<const char*>;
using Figures = PerGauge<std::int16_t>;

class ReplyDecoderTest : public testing::Test, public World {
 protected:
  ReplyDecoderTest() {
    link.Attach();
    ups_port.Open();
    ups_port.Notify(true);
    CaptureNeedles(panel, state.Main);
  }

  // The captions, their copies, and the needles where SetGauge puts them for `gauges`.
  void ExpectShown(const Texts& captions, const Figures& gauges) {
    for (const Gauge gauge : kGauges) {
      SCOPED_TRACE(static_cast<int>(gauge));
      EXPECT_EQ(panel.read_outs[gauge].Caption(), captions[gauge]);
      EXPECT_EQ(panel.bar_figures[gauge].Caption(), captions[gauge]);
      Panel other;
      SetGauge(state.Main, other, gauge, gauges[gauge]);
      EXPECT_EQ(panel.needles[gauge].Line(), other.needles[gauge].Line());
    }
  }

  UpsLink link{state, panel, journals, seams};
};

TEST_F(ReplyDecoderTest, ValuesGoToCaptionsAndGauges) {
  const StatusFrame good{"233.0", "232.0", "035", "51.0", "2.00", "26.0", "0000"};
  // Input, output, load, battery, frequency and temperature each.
  const struct {
    const char* name;
    std::array<const char*, 6> fields;
    Texts captions;
    Figures gauges;
    bool overload = false;
  } cases[] = {
      {"on the scales; a load of the whole",
       {"231.4", "220.5", "100", "2.00", "50.1", "25.0"},
       {"231.4", "220.5", "100", "51", "50.1", "25"},
       {231, 220, 100, 51, 50, 25},
       true},
      {"their lower ends; halves go to even",
       {"200.0", "221.5", " 0 ", "1.72", "30.0", "-0.0"},
       {"200", "221.5", "0", "0", "30", "0"},
       {200, 222, 0, 0, 30, 0}},
      {"below them; all but the whole load",
       {"199.9", "150.0", "099", "1.60", "29.0", "-9.5"},
       {"199.9", "150", "99", "0", "29", "-9.5"},
       {200, 200, 99, 0, 30, 0}},
      {"their upper ends",
       {"250.0", "250.0", "125", "2.27", "80.0", "75.0"},
       {"250", "250", "125", "100", "80", "75"},
       {250, 250, 125, 100, 80, 75},
       true},
      {"above them",
       {"250.1", "250.1", "126", "2.30", "80.6", "99.9"},
       {"250.1", "250.1", "126", "100", "80.6", "99.9"},
       {250, 250, 125, 100, 80, 75},
       true},
      {"doubled below 150 of the output, but not for its needle",
       {"110.0", "149.9", " 7 ", "2.00", "50.0", "25.0"},
       {"220", "299.8", "7", "51", "50", "25"},
       {220, 200, 7, 51, 50, 25}},
      {"too small for a float",
       {"4E-77", "232.0", "035", "2.00", "51.0", "26.0"},
       {"0", "232", "35", "51", "51", "26"},
       {200, 232, 35, 51, 51, 26}},
      // A bad field leaves its caption and takes the first branch.
      {"a bad input",
       {"?????", "232.0", "035", "2.00", "51.0", "26.0"},
       {"233", "232", "35", "51", "51", "26"},
       {233, 232, 35, 51, 51, 26}},
      {"a bad output doubles the input, all but the input",
       {"233.0", "2x2.0", "---", "2,00", "nan ", "1.2."},
       {"466", "232", "35", "100", "51", "26"},
       {250, 250, 125, 100, 80, 75},
       true},
      {"twice the output is no number",
       {"233.0", "-3e38", "035", "2.00", "51.0", "26.0"},
       {"466", "232", "35", "51", "51", "26"},
       {250, 200, 35, 51, 51, 26}},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.name);
    ups_port.Receive(good.Text());
    EXPECT_FALSE(panel.overload_warning.Visible());
    // The bars follow when all six values stand.
    panel.bar_figures[Gauge::kInput].Observer = [&] {
      EXPECT_EQ(panel.read_outs[Gauge::kTemperature].Caption(), row.captions[Gauge::kTemperature]);
    };
    const auto& [input, output, load, battery, frequency, temperature] = row.fields;
    ups_port.Receive(
        StatusFrame{input, output, load, frequency, battery, temperature, "0000"}.Text());
    ExpectShown(row.captions, row.gauges);
    EXPECT_EQ(panel.overload_warning.Visible(), row.overload);
    panel.bar_figures[Gauge::kInput].Observer = nullptr;
  }
}

TEST_F(ReplyDecoderTest, ShapeDecidesWhatIsDecoded) {
  const std::string whole = StatusFrame{}.Text();
  const struct {
    const char* name;
    std::string text;
    bool decoded;
  } cases[] = {
      {"status of 46 characters", whole.substr(0, 46), false},
      {"status of 47 characters", whole.substr(0, 46) + "x", true},
      {"garbage in front", "x" + whole, false},
      {"NULs where no column is read", whole.substr(0, 6) + std::string(7, '\0') + whole.substr(13),
       true},
      {"information of 29 characters", "OV,700,2.1,220,x,8,12,y,zzzzz", false},
      {"information of 30 characters", "OV,700,2.1,220,x,8,12,y,zzzzzz", true},
      {"7 commas", "OV,700,2.1,220,x,8,12,y zzzzzzzzz", false},
      {"9 commas", "OV,700,2.1,220,x,8,12,y,z,zzzzzzz", false},
      {"empty fields", ",,,,,,,,22222222222222222222222", true},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.name);
    state.Main.RxText.clear();
    state.Main.PollsSent = 3;
    state.Main.PollsAnswered = 0;
    ups_port.Receive(row.text);
    EXPECT_EQ(state.Main.PollsAnswered, row.decoded ? 3 : 0);
    // A line is dropped at its end.
    EXPECT_EQ(state.Main.RxText.empty(), row.decoded || row.text.ends_with('\r'));
  }
}

// Replies that come back to back, in whatever pieces: the answers to a poll and to the question for
// the UPS's data after a silence.
TEST_F(ReplyDecoderTest, EachReplyCountsInFrontOfAndBehindAnother) {
  const std::string status = StatusFrame{.bits = "1000"}.Text();
  const std::string information = "OV,700,2.1,220,x,8,12,y,zzzzzz\r";
  for (const std::string& text :
       {status + information, information + status, status + information + ",\r",
        "MD\r" + information + "\r(\r" + status}) {
    for (std::size_t piece = 1; piece <= text.size(); ++piece) {
      SCOPED_TRACE(piece);
      panel.mains.Caption("");
      panel.information[UpsDatum::kModel].Caption("UnKnown");
      for (std::size_t at = 0; at < text.size(); at += piece) {
        ups_port.Receive(text.substr(at, piece));
      }
      EXPECT_EQ(panel.mains.Caption(), "Fail");
      EXPECT_EQ(panel.information[UpsDatum::kModel].Caption(), "OV");
    }
  }
}

}  // namespace
}  // namespace orvane::test
