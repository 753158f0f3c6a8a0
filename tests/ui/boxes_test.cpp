// The splash, the about box and the alert.
#include <gtest/gtest.h>

#include <QKeyEvent>
#include <QPushButton>
#include <QWindow>

#include "support/world.h"
#include "ui/about_window.h"
#include "ui/alert_window.h"
#include "ui/pointer.h"
#include "ui/splash_window.h"
#include "ui/windows.h"

namespace orvane::test {
namespace {

constexpr QPointF kBareFrame{5, 200};

struct BoxesTest : testing::Test, World {
  BoxesTest() { forms.open = {Form::frmSplash, Form::frmAbout, Form::frmAlert}; }

  FrmAlert alert{state, panel, seams};
};

// It stands before the load goes on, and a key ends it.
TEST_F(BoxesTest, SplashIsPaintedAtOnceAndLeavesAtAKey) {
  Windows windows;
  windows.Make(Form::frmSplash, [&] { return new SplashWindow(windows); });
  windows.ShowPainted(Form::frmSplash);
  QWidget* shown = windows.Window(Form::frmSplash);
  ASSERT_NE(shown, nullptr);
  EXPECT_TRUE(shown->windowHandle()->isExposed());
  QKeyEvent key(QEvent::KeyPress, Qt::Key_F7, Qt::NoModifier);
  QApplication::sendEvent(shown, &key);
  EXPECT_EQ(windows.Window(Form::frmSplash), nullptr);
}

TEST_F(BoxesTest, SplashLeavesAtAClickOnItsBareFrameAlone) {
  SplashWindow splash(forms);
  for (QWidget* control : splash.findChildren<QWidget*>()) Click(*control, Middle(*control));
  Click(splash, kBareFrame, {.button = Qt::RightButton});
  // Pressed on a control, released on the frame; and the other way round.
  SendMouse(splash, QEvent::MouseButtonRelease, kBareFrame, {});
  SendMouse(splash, QEvent::MouseButtonPress, kBareFrame, {});
  SendMouse(splash, QEvent::MouseButtonRelease, {-40, 200}, {});
  EXPECT_EQ(events, Events{});
  Click(splash, kBareFrame);
  EXPECT_EQ(events, Events{"Unload frmSplash"});
}

TEST_F(BoxesTest, ContactBoxNeedsTheRightButtonAndExactlyThreeKeysOnTheSurface) {
  constexpr Qt::KeyboardModifier kKeys[] = {Qt::ShiftModifier, Qt::ControlModifier,
                                            Qt::AltModifier};
  constexpr auto kThree = kKeys[0] | kKeys[1] | kKeys[2];
  AboutWindow window(state, forms, dialogs);
  Click(window, {5, 5}, {Qt::LeftButton, kThree});
  Click(window, {5, 5}, {Qt::RightButton, kThree | Qt::MetaModifier});
  for (const auto key : kKeys) Click(window, {5, 5}, {Qt::RightButton, kThree & ~key});
  for (QWidget* control : window.findChildren<QWidget*>()) {
    Click(*control, Middle(*control), {Qt::RightButton, kThree});
  }
  EXPECT_EQ(events, Events{});
  // The author's line is in the language of the moment.
  for (const int base : {0, kChineseBase}) {
    state.ResBase = static_cast<std::int16_t>(base);
    Click(window, {5, 5}, {Qt::RightButton, kThree});
    const std::string text = std::string(state.Message(41)) + "\r\rContact: ";
    EXPECT_NE(events.back().find(text), std::string::npos) << events.back();
  }
  Part<QPushButton>(window, "Command1").click();
  EXPECT_EQ(events.size(), 3U);
  EXPECT_EQ(events.back(), "Unload frmAbout");
}

TEST_F(BoxesTest, AlertFollowsTheCountUntilItIsClosed) {
  state.ShutdownCountdown = 119;
  AlertWindow window(state, alert);
  EXPECT_TRUE(window.windowFlags() & Qt::WindowStaysOnTopHint);
  window.show();
  EXPECT_EQ(TextOf(window, "lblSecond"), "119");
  state.ShutdownCountdown = 118;
  time.Advance(std::chrono::seconds(1));
  EXPECT_EQ(TextOf(window, "lblSecond"), "118");
  Part<QPushButton>(window, "Command1").click();
  EXPECT_EQ(events, Events{"Unload frmAlert"});
  window.close();
  EXPECT_FALSE(alert_timer.Enabled());
}

// The window of an alert that has been closed is deleted late, after the next one has come.
TEST_F(BoxesTest, LateDeletionOfAnAlertLeavesTheNextAlone) {
  static_cast<void>(AlertWindow(state, alert));
  state.ShutdownCountdown = 8;
  auto first = std::make_unique<AlertWindow>(state, alert);
  first->show();
  first->close();
  AlertWindow second(state, alert);
  first.reset();
  state.ShutdownCountdown = 7;
  time.Advance(std::chrono::seconds(1));
  EXPECT_EQ(TextOf(second, "lblSecond"), "7");
}

}  // namespace
}  // namespace orvane::test
