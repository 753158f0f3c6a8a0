#include "ui/alert_window.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QPushButton>

#include "support/world.h"
#include "ui/pointer.h"

namespace orvane::test {
namespace {

class AlertWindowTest : public testing::Test, public World {
 protected:
  FrmAlert alert{state, panel, seams};
};

TEST_F(AlertWindowTest, WordsFollowTheLanguage) {
  struct Case {
    int base;
    const char* title;
    const char* what;
    const char* when;
    const char* ok;
    bool unit;
  };
  const Case cases[] = {
      {0, "Warning", "Warning! AC Fail!", "System Will Shutdown After:", "OK", true},
      {1000, "警告", "警告！市电中断！", "系统关闭倒计时(秒)：", "确 定", false},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.base);
    state.ResBase = static_cast<std::int16_t>(row.base);
    AlertWindow window(state, alert);
    EXPECT_EQ(window.windowTitle(), row.title);
    EXPECT_EQ(TextOf(window, "Label1"), row.what);
    EXPECT_EQ(TextOf(window, "Label2"), row.when);
    EXPECT_EQ(TextOf(window, "Label3"), "Second(s)");
    EXPECT_EQ(!window.findChild<QLabel*>("Label3")->isHidden(), row.unit);
    EXPECT_EQ(window.findChild<QPushButton*>("Command1")->text(), row.ok);
    EXPECT_EQ(window.palette().color(QPalette::Window), QColor(255, 255, 0));
    EXPECT_TRUE(window.windowFlags() & Qt::WindowStaysOnTopHint);
  }
}

TEST_F(AlertWindowTest, FollowsTheCountUntilItIsClosed) {
  state.ShutdownCountdown = 119;
  AlertWindow window(state, alert);
  window.show();
  EXPECT_EQ(TextOf(window, "lblSecond"), "119");
  const auto* seconds = window.findChild<QLabel*>("lblSecond");
  EXPECT_EQ(seconds->palette().color(QPalette::WindowText), QColor(255, 0, 0));
  state.ShutdownCountdown = 118;
  time.Advance(std::chrono::seconds(1));
  EXPECT_EQ(TextOf(window, "lblSecond"), "118");
  forms.open.insert(Form::frmAlert);
  window.findChild<QPushButton*>("Command1")->click();
  EXPECT_FALSE(forms.open.contains(Form::frmAlert));
  window.close();
  EXPECT_FALSE(alert_timer.Enabled());
}

// The window of an alert that has been closed is deleted late, after the next one has come.
TEST_F(AlertWindowTest, ALateDeletionLeavesTheNextAlertAlone) {
  auto first = std::make_unique<AlertWindow>(state, alert);
  first->show();
  first->close();
  AlertWindow second(state, alert);
  first.reset();
  EXPECT_TRUE(alert_timer.Enabled());
  state.ShutdownCountdown = 7;
  time.Advance(std::chrono::seconds(1));
  EXPECT_EQ(TextOf(second, "lblSecond"), "7");
}

}  // namespace
}  // namespace orvane::test
