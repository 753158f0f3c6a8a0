// The splash, the about box and the alert.
#include <QTest>
#include <QWindow>

#include "ui/about_window.h"
#include "ui/alert_window.h"
#include "ui/opened_window.h"
#include "ui/splash_window.h"
#include "ui/windows.h"

namespace orvane::test {
namespace {

struct BoxesTest : OpenedWindow {
  BoxesTest() { forms.open = {Form::kAbout, Form::kAlert}; }

  AlertForm alert{state, panel, seams};
};

// It stands before the load goes on.
TEST_F(BoxesTest, SplashIsPaintedAtOnceAndLeavesAtAKeyOrAClickOnItsBareFrame) {
  Windows windows;
  windows.Make(Form::kSplash, [&] { return new SplashWindow(windows); });
  for (const bool by_key : {true, false}) {
    windows.ShowPainted(Form::kSplash);
    QWidget& splash = *windows.Window(Form::kSplash);
    EXPECT_TRUE(splash.windowHandle()->isExposed());
    for (QWidget* control : splash.findChildren<QWidget*>()) {
      QTest::mouseClick(control, Qt::LeftButton);
    }
    ASSERT_EQ(windows.Window(Form::kSplash), &splash);
    if (by_key) {
      QTest::keyClick(&splash, Qt::Key_F7);
    } else {
      QTest::mouseClick(&splash, Qt::LeftButton, {}, {5, 200});
    }
    EXPECT_EQ(windows.Window(Form::kSplash), nullptr);
  }
}

TEST_F(BoxesTest, ContactBoxNeedsTheRightButtonAndExactlyThreeKeys) {
  constexpr auto kThree = Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier;
  Open(new AboutWindow(state, "Orvane 1.2", forms, dialogs));
  QTest::mouseClick(window.get(), Qt::LeftButton, kThree, {5, 5});
  QTest::mouseClick(window.get(), Qt::RightButton, kThree | Qt::MetaModifier, {5, 5});
  QTest::mouseClick(window.get(), Qt::RightButton, kThree & ~Qt::AltModifier, {5, 5});
  EXPECT_EQ(events, Events{});
  QTest::mouseClick(window.get(), Qt::RightButton, kThree, {5, 5});
  EXPECT_NE(events.back().find(std::string(state.Text(Message::kCopyright)) + "\r\rContact: "),
            std::string::npos);
  Push("ok");
  EXPECT_EQ(events.back(), "Unload about");
}

// Its window is deleted late, after the next one has come.
TEST_F(BoxesTest, AlertFollowsTheCountUntilItIsClosed) {
  const auto second_passes = [this](QWidget& shown, std::int32_t count) {
    state.ShutdownCountdown = count;
    time.Advance(std::chrono::seconds(1));
    EXPECT_EQ(TextOf(shown, "seconds"), std::to_string(count));
  };
  Open(new AlertWindow(state, alert));
  EXPECT_TRUE(window->windowFlags() & Qt::WindowStaysOnTopHint);
  second_passes(*window, 118);
  Push("ok");
  EXPECT_EQ(events, Events{"Unload alert"});
  window->close();
  EXPECT_FALSE(alert_timer.Enabled());
  AlertWindow next(state, alert);
  window.reset();
  second_passes(next, 7);
}

}  // namespace
}  // namespace orvane::test
