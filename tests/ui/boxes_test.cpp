// The splash and the about box.
#include <gtest/gtest.h>

#include <QKeyEvent>
#include <QPushButton>
#include <QWindow>

#include "support/world.h"
#include "ui/about_window.h"
#include "ui/pointer.h"
#include "ui/splash_window.h"
#include "ui/windows.h"

namespace orvane::test {
namespace {

constexpr QPointF kBareFrame{5, 200};

struct BoxesTest : testing::Test, World {
  BoxesTest() { forms.open = {Form::frmSplash, Form::frmAbout}; }
};

// It stands before the load goes on, and a key ends it and nothing else.
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

TEST_F(BoxesTest, AboutSpeaksTheLanguageOfItsLoadAndTheSplashEnglish) {
  const AboutWindow english(state, forms, dialogs);
  const std::string notice = TextOf(english, "Label4");
  EXPECT_EQ(TextOf(SplashWindow(forms), "lblDisclaimer"), notice);
  state.ResBase = 1000;
  const AboutWindow chinese(state, forms, dialogs);
  EXPECT_EQ(TextOf(SplashWindow(forms), "lblDisclaimer"), notice);
  EXPECT_EQ(english.windowTitle(), "About Orvane");
  EXPECT_EQ(chinese.windowTitle(), "关于Orvane");
  for (const char* translated : {"Label3", "Label4"}) {
    EXPECT_NE(TextOf(english, translated), TextOf(chinese, translated));
  }
  Part<QPushButton>(chinese, "Command1").click();
  EXPECT_EQ(events, Events{"Unload frmAbout"});
}

TEST_F(BoxesTest, ContactBoxNeedsTheRightButtonAndExactlyThreeKeysOnTheSurface) {
  constexpr auto kThree = Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier;
  const Press others[] = {{Qt::LeftButton, kThree},
                          {Qt::MiddleButton, kThree},
                          {Qt::RightButton, Qt::ShiftModifier | Qt::ControlModifier},
                          {Qt::RightButton, Qt::ShiftModifier | Qt::AltModifier},
                          {Qt::RightButton, Qt::ControlModifier | Qt::AltModifier},
                          {Qt::RightButton, Qt::NoModifier},
                          {Qt::RightButton, kThree | Qt::MetaModifier}};
  AboutWindow window(state, forms, dialogs);
  for (const Press& press : others) Click(window, {5, 5}, press);
  for (QWidget* control : window.findChildren<QWidget*>()) {
    Click(*control, Middle(*control), {Qt::RightButton, kThree});
  }
  EXPECT_EQ(events, Events{});
  // The author's line is in the language of the moment.
  for (const std::int16_t base : {std::int16_t{0}, std::int16_t{1000}}) {
    state.ResBase = base;
    Click(window, {5, 5}, {Qt::RightButton, kThree});
    const std::string text = std::string(state.Message(41)) + "\r\rContact: ";
    EXPECT_NE(events.back().find(text), std::string::npos) << events.back();
  }
  EXPECT_EQ(events.size(), 2U);
}

}  // namespace
}  // namespace orvane::test
