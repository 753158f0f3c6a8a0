// What UPSes say that do not know "MD", and what the panel makes of it.
#include <gtest/gtest.h>

#include <cmath>

#include "link/battery_scale.h"
#include "link/data_replies.h"
#include "link/numbers.h"
#include "link/ups_link.h"
#include "simulate/ups_dialect.h"
#include "support/simulated_device.h"
#include "support/status_frame.h"
#include "support/world.h"

namespace orvane::test {
namespace {

using Texts = std::array<std::string, std::size(kUpsData)>;

constexpr const char* kUnknown = "UnKnown";

class DialectsTest : public testing::Test, public World {
 protected:
  DialectsTest() {
    link.Attach();
    poll_timer.Interval(2000);
    poll_timer.Tick = [this] { link.OnPoll(); };
    poll_timer.Enabled(true);
    link.OpenPort();
    ups_port.Notify(true);
  }

  void Polls(int count) { time.Advance(std::chrono::seconds(2 * count)); }

  // All that was asked, "Q1" but its first letter.
  std::string Asked() const {
    std::string asked;
    for (const std::string& text : ups_port.sent) asked += text == "Q1\r" ? "." : text;
    return asked;
  }

  Texts Shown() const {
    Texts texts;
    for (std::size_t i = 0; i < texts.size(); ++i)
      texts[i] = panel.information[kUpsData[i]].Caption();
    return texts;
  }

  std::string Charge(const std::string& battery) {
    ups_port.Receive(StatusFrame{.battery = battery}.Text());
    return panel.read_outs[Gauge::kBattery].Caption();
  }

  UpsLink link{state, panel, journals, seams};
};

TEST_F(DialectsTest, EachIsAskedInItsWayAndShowsWhatItKnows) {
  const struct {
    const char* dialect;
    const char* asked;
    Texts shown;  // batteries, model, version, volts, power, battery volts
  } cases[] = {
      {"md", ".MD\r.....", {"8", "UPS Simulator", "1.0", "230V", "700W", "12V"}},
      {"standard", ".MD\r..F\r.I\r..", {"8", "UPS Online", "2.0", "230V", "690VA", "96V"}},
      {"line-interactive", ".MD\r..F\r.I\r..", {"2", "UPS Line", "2.1", "230V", "460VA", "24V"}},
      {"dashes", ".MD\r..F\r.I\r..", {"3", "UPS Plain", kUnknown, "230V", kUnknown, "36V"}},
      {"silent-info",
       ".MD\r..F\r.I\r..",
       {kUnknown, kUnknown, kUnknown, kUnknown, kUnknown, kUnknown}},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.dialect);
    SimulatedUps ups(time, ups_port);
    ups.Do([&](UpsModel& model) { model.Speak(*FindUpsDialect(row.dialect)); });
    for (int rise = 0; rise < 2; ++rise) {
      ups_port.sent.clear();
      Polls(6);
      EXPECT_EQ(Asked(), row.asked);
      EXPECT_EQ(Shown(), row.shown);
      // From full to empty and back, as far as a tenth of a volt of a whole battery goes.
      for (int percent = 100; percent >= -100; percent -= 5) {
        ups.Do([&](UpsModel& model) { model.Battery(std::abs(percent)); });
        Polls(2);
        const auto shown = ReadNumber(panel.read_outs[Gauge::kBattery].Caption());
        EXPECT_NEAR(shown.value_or(-1), std::abs(percent), 1) << percent;
      }
      ups.Do([](UpsModel& model) { model.Mute(true); });
      Polls(5);
      EXPECT_EQ(Shown()[1], kUnknown);
      ups.Do([](UpsModel& model) { model.Mute(false); });
    }
  }
}

TEST_F(DialectsTest, DataRepliesCountWhereTheyWereAskedFor) {
  const std::string rating = "#230.0 003 48.00 50.0\r", name = "#OV Works        OV-1000\r";
  ups_port.OnSent = [&](const std::string& text) {
    // Unasked, in front of and behind a status reply.
    if (text == "Q1\r") ups_port.Receive(name + StatusFrame{}.Text() + rating);
  };
  Polls(2);
  EXPECT_EQ(Shown()[1], kUnknown);
  Polls(3);
  EXPECT_EQ(Shown(), (Texts{"4", "OV-1000", kUnknown, "230V", "690VA", "48V"}));
  // They answer a poll.
  ups_port.OnSent = nullptr;
  state.Main.Data.rating = Question::kAsked;
  Polls(2);
  ups_port.Receive(rating);
  EXPECT_EQ(state.Main.PollsAnswered, state.Main.PollsSent);
}

TEST(DataRepliesTest, Ratings) {
  const struct {
    const char* line;
    bool is_rating;
    std::optional<float> volts, amperes, battery;
  } cases[] = {
      {"#230.0 003 12.00 50.0", true, 230, 3, 12},
      {"#220.0 000 024.0 50.0", true, 220, {}, 24},
      {"#115.0  00.5 192.0 60.0 ", true, 115, 0.5, 192},
      {"#---.- --- --.-- --.-", true, {}, {}, {}},
      {"#-20.0 003 12.00 50.0", true, {}, 3, 12},
      {"230.0 003 12.00 50.0", false, {}, {}, {}},
      {"#230.0 003 12.00", false, {}, {}, {}},
      {"#230.0 003 12.00 50.0 1", false, {}, {}, {}},
      {"#230.0 3A 12.00 50.0", false, {}, {}, {}},
      {"#", false, {}, {}, {}},
      {"F", false, {}, {}, {}},
      {"", false, {}, {}, {}},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.line);
    const auto rating = ReadRatingReply(row.line);
    ASSERT_EQ(rating.has_value(), row.is_rating);
    if (!rating) continue;
    EXPECT_EQ(rating->volts, row.volts);
    EXPECT_EQ(rating->amperes, row.amperes);
    EXPECT_EQ(rating->battery_volts, row.battery);
  }
}

TEST(DataRepliesTest, Names) {
  const struct {
    std::string line;
    const char* company;  // null: no name reply
    const char* model = "";
    const char* version = "";
  } cases[] = {
      {"#123456789012345 1234567890 1234567890", "123456789012345", "1234567890", "1234567890"},
      {"#Works           OV 1000    V 2.1     ", "Works", "OV 1000", "V 2.1"},
      {"#                OV", "", "OV"},
      {"#Works", "Works"},
      {"#" + std::string(60, ' '), ""},
      {"#123456789012345 1234567890 12345678901", nullptr},
      {"#1234567890123456", nullptr},
      {"#                12345678901", nullptr},
      {"#230.0 003 12.00 50.0", nullptr},
      {"#W\xF6rks", nullptr},
      {"#W\trks", nullptr},
      {"I", nullptr},
      {"", nullptr},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.line);
    const auto name = ReadNameReply(row.line);
    ASSERT_EQ(name.has_value(), row.company != nullptr);
    if (!name) continue;
    EXPECT_EQ(name->company, row.company);
    EXPECT_EQ(name->model, row.model);
    EXPECT_EQ(name->version, row.version);
  }
}

TEST_F(DialectsTest, ChargeOfAWholeBattery) {
  const struct {
    const char* name;
    std::optional<float> told, rated;
    const char* figure;
    const char* charge;
  } cases[] = {
      {"volts of one cell", 24, 24, "2.00", "51"},
      {"up to 3", {}, {}, "3.00", "100"},
      {"by the UPS", {}, 24, "24.0", "51"},
      {"a block of two", {}, 12, "24.0", "51"},
      {"a bank, not it", {}, 96, "24.0", "51"},
      {"by the user first", 48, 24, "48.0", "51"},
      {"12", {}, {}, "13.6", "99"},
      {"24", {}, {}, "27.0", "96"},
      {"36", {}, {}, "36.0", "51"},
      {"48", {}, {}, "54.0", "96"},
      {"72", {}, {}, "81.0", "96"},
      {"96", {}, {}, "105.", "85"},
      {"192", {}, {}, "216.", "96"},
      {"240", {}, {}, "240.", "51"},
      {"beyond the usual", {}, {}, "480.", "100"},
      {"dashes are no number", 24, 24, "--.-", "100"},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.name);
    state.BatteryVoltage = row.told;
    state.Main.Data = {};
    state.Main.Data.rated_battery = row.rated;
    EXPECT_EQ(Charge(row.figure), row.charge);
  }
  // The cells are counted once: 24.8 V alone would be those of a smaller battery.
  state.BatteryVoltage.reset();
  state.Main.Data = {};
  EXPECT_EQ(Charge("40.5"), "96");
  EXPECT_EQ(Charge("29.0"), "0");
  EXPECT_EQ(Charge("40.5"), "96");
  EXPECT_EQ(UsualBattery(29.0F), 24);
}

}  // namespace
}  // namespace orvane::test
