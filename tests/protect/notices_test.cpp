#include "protect/notices.h"

#include <gtest/gtest.h>

#include "frame/main_form.h"
#include "support/status_frame.h"
#include "support/world.h"

namespace orvane::test {
namespace {

using std::chrono::seconds;
using Texts = std::vector<std::string>;

// The clock stands at 9:05:33 when the form is loaded.
class NoticesTest : public testing::Test, public World {
 protected:
  NoticesTest() {
    disk.files["/prog/Orvane.ini"] = "1,10,0,2,0,1,0,0,3,0,\"\",0\r\n";
    forms.open = {Form::kMain};
    forms.OnUnload = [this](Form closed) {
      if (closed == Form::kAlert) form.Alert().Unload();
      if (closed == Form::kMain) form.Unload();
    };
    forms.OnLoad = [this](Form shown) {
      if (shown == Form::kAlert) form.Alert().Load();
    };
    EXPECT_TRUE(form.Load());
    form.Activate();
    Bits("0000");
  }

  // The UPS says this from now on; nothing with no text.
  void Bits(const std::string& bits) {
    ups_port.OnSent = [this, bits](const std::string& text) {
      if (text == "Q1\r" && !bits.empty()) ups_port.Receive(StatusFrame{.bits = bits}.Text());
    };
  }

  // What was shown in the meantime.
  Texts Pass(int length) {
    host.notified.clear();
    time.Advance(seconds(length));
    return host.notified;
  }

  MainForm form{state, panel, seams};
};

TEST_F(NoticesTest, MainsFailureIsToldWithItsEndAndKeptUpToDate) {
  EXPECT_EQ(Pass(4), Texts{});
  Bits("1000");
  EXPECT_EQ(Pass(61), Texts{"Mains failure!*: The computer goes down at 9:15:39."});
  // A low battery leaves two minutes.
  Bits("1100");
  EXPECT_EQ(Pass(3), (Texts{"Battery low: The UPS reports that its battery is low.",
                            "Mains failure!*: The computer goes down at 9:08:39."}));
  // The count stands still while the UPS is silent.
  Bits("");
  EXPECT_EQ(Pass(7), Texts{});
  EXPECT_EQ(Pass(2), Texts{"Mains failure!*: The countdown stands still until the UPS answers."});
  Bits("1100");
  EXPECT_EQ(Pass(2), Texts{"Mains failure!*: The computer goes down at 9:08:42."});
  Bits("0000");
  EXPECT_EQ(Pass(10), Texts{"The mains is back: The countdown has ended."});
  EXPECT_FALSE(host.shown.contains(Notice::kBatteryLow));
}

TEST_F(NoticesTest, AlertTakesThePlaceOfTheNotificationAndTheWayDownItsOwn) {
  Pass(2);
  Bits("1000");
  Pass(9 * 60);
  EXPECT_TRUE(host.shown.contains(Notice::kMains));
  Pass(5);
  ASSERT_TRUE(form.Alert().Showing());
  EXPECT_FALSE(host.shown.contains(Notice::kMains));
  // The user closes the alert.
  form.Alert().Close();
  EXPECT_EQ(Pass(2), Texts{"Mains failure!*: The computer goes down at 9:15:38."});
  host.OnRun = [this] {
    EXPECT_FALSE(host.shown.contains(Notice::kMains));
    EXPECT_TRUE(host.shown.contains(Notice::kWayDown));
  };
  EXPECT_EQ(Pass(120), Texts{"The computer goes down now!*: "
                             "The applications are asked to save and close."});
  EXPECT_EQ(events.back(), "TakeDown");
}

TEST_F(NoticesTest, FaultAndSilenceAreToldOnceAndTakenBack) {
  Pass(2);
  Bits("0001");
  EXPECT_EQ(Pass(60), Texts{"UPS fault!: The UPS reports a fault of its own."});
  Bits("");
  // The fourth poll loses the link, and half a minute more makes it worth a word.
  EXPECT_EQ(Pass(36), Texts{});
  EXPECT_EQ(Pass(60),
            Texts{"No answer from the UPS*: A mains failure is not noticed until it answers."});
  Bits("0000");
  EXPECT_EQ(Pass(10), Texts{});
  EXPECT_TRUE(host.shown.empty());
  state.language = Language::kChinese;
  Bits("0001");
  EXPECT_EQ(Pass(2), Texts{"UPS 故障!: UPS 报告自身故障。"});
  form.Unload();
  EXPECT_TRUE(host.shown.empty());
}

}  // namespace
}  // namespace orvane::test
