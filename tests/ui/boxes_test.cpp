// The splash and the about box.
#include <gtest/gtest.h>

#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QWindow>
#include <algorithm>

#include "support/world.h"
#include "ui/about_window.h"
#include "ui/pointer.h"
#include "ui/splash_window.h"
#include "ui/windows.h"

namespace orvane::test {
namespace {

constexpr Qt::KeyboardModifiers kShift = Qt::ShiftModifier;
constexpr Qt::KeyboardModifiers kCtrl = Qt::ControlModifier;
constexpr Qt::KeyboardModifiers kAlt = Qt::AltModifier;
constexpr Qt::KeyboardModifiers kMeta = Qt::MetaModifier;

QString TextOf(const QWidget& window, const char* name) {
  const auto* label = window.findChild<QLabel*>(name);
  return label ? label->text() : QString("no such label");
}

struct SplashTest : testing::Test, World {
  SplashTest() { forms.open.insert(Form::frmSplash); }
  bool Unloaded() const {
    return std::find(events.begin(), events.end(), "Unload frmSplash") != events.end();
  }
  SplashWindow splash{forms};
};

TEST_F(SplashTest, TellsWhatStarts) {
  EXPECT_EQ(TextOf(splash, "lblCompanyProduct"), "ORVANE");
  EXPECT_EQ(TextOf(splash, "lblPlatform"), "FOR WINDOWS 9X/NT");
  EXPECT_EQ(TextOf(splash, "lblVersion"), "Ver 3.0");
  EXPECT_TRUE(splash.windowFlags().testFlag(Qt::FramelessWindowHint));
}

TEST_F(SplashTest, AnyKeyUnloadsIt) {
  QKeyEvent key(QEvent::KeyPress, Qt::Key_F7, Qt::NoModifier);
  QApplication::sendEvent(&splash, &key);
  EXPECT_TRUE(Unloaded());
}

TEST_F(SplashTest, ClickOnTheBareFrameUnloadsIt) {
  ASSERT_EQ(splash.childAt(5, 200), nullptr);
  Click(splash, {5, 200});
  EXPECT_TRUE(Unloaded());
}

TEST_F(SplashTest, OtherClicksDoNothing) {
  for (QWidget* control : splash.findChildren<QWidget*>()) Click(*control, Middle(*control));
  Click(splash, {5, 200}, {.button = Qt::RightButton});
  // Pressed on a control, released on the frame; and the other way round.
  SendMouse(splash, QEvent::MouseButtonRelease, {5, 200}, {});
  SendMouse(splash, QEvent::MouseButtonPress, {5, 200}, {});
  SendMouse(splash, QEvent::MouseButtonRelease, {-40, 200}, {});
  EXPECT_FALSE(Unloaded());
}

TEST_F(SplashTest, NoticeIsEnglishInBothLanguages) {
  const QString english = TextOf(splash, "lblDisclaimer");
  state.ResBase = 1000;
  EXPECT_EQ(TextOf(SplashWindow(forms), "lblDisclaimer"), english);
  EXPECT_GT(english.size(), 40);
}

TEST_F(SplashTest, IsOnTheScreenBeforeTheLoadGoesOn) {
  Windows windows;
  windows.Make(Form::frmSplash, [&] { return new SplashWindow(windows); });
  windows.ShowPainted(Form::frmSplash);
  QWidget* shown = windows.Window(Form::frmSplash);
  ASSERT_NE(shown, nullptr);
  EXPECT_TRUE(shown->windowHandle()->isExposed());
  QKeyEvent key(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier);
  QApplication::sendEvent(shown, &key);
  EXPECT_EQ(windows.Window(Form::frmSplash), nullptr);
}

struct AboutTest : testing::Test, World {};

TEST_F(AboutTest, SpeaksTheLanguageOfItsLoad) {
  const AboutWindow english(state, forms, dialogs);
  state.ResBase = 1000;
  const AboutWindow chinese(state, forms, dialogs);
  EXPECT_EQ(english.windowTitle(), "About Orvane");
  EXPECT_EQ(chinese.windowTitle(), "关于Orvane");
  for (const AboutWindow* window : {&english, &chinese}) {
    EXPECT_EQ(TextOf(*window, "Label1"), "Orvane");
    EXPECT_EQ(TextOf(*window, "Label2"), "For Windows 9X/NT Ver 3.0");
    EXPECT_EQ(window->minimumSize(), window->maximumSize());
  }
  for (const char* translated : {"Label3", "Label4"}) {
    EXPECT_NE(TextOf(english, translated), TextOf(chinese, translated));
  }
}

TEST_F(AboutTest, ButtonUnloadsIt) {
  forms.open.insert(Form::frmAbout);
  const AboutWindow window(state, forms, dialogs);
  window.findChild<QPushButton*>("Command1")->click();
  EXPECT_EQ(events, (Events{"Unload frmAbout"}));
}

TEST_F(AboutTest, ContactBoxNeedsTheRightButtonAndExactlyThreeKeys) {
  struct Row {
    Press press;
    bool box;
  };
  const Row rows[] = {
      {{Qt::RightButton, kShift | kCtrl | kAlt}, true},
      {{Qt::LeftButton, kShift | kCtrl | kAlt}, false},
      {{Qt::MiddleButton, kShift | kCtrl | kAlt}, false},
      {{Qt::RightButton, kShift | kCtrl}, false},
      {{Qt::RightButton, kShift | kAlt}, false},
      {{Qt::RightButton, kCtrl | kAlt}, false},
      {{Qt::RightButton, Qt::NoModifier}, false},
      {{Qt::RightButton, kShift | kCtrl | kAlt | kMeta}, false},
  };
  AboutWindow window(state, forms, dialogs);
  ASSERT_EQ(window.childAt(5, 5), nullptr);
  for (const Row& row : rows) {
    events.clear();
    Click(window, {5, 5}, row.press);
    EXPECT_EQ(!events.empty(), row.box) << row.press.modifiers.toInt();
  }
}

TEST_F(AboutTest, ContactBoxOpensOnTheSurfaceAlone) {
  AboutWindow window(state, forms, dialogs);
  for (QWidget* control : window.findChildren<QWidget*>()) {
    Click(*control, Middle(*control), {Qt::RightButton, kShift | kCtrl | kAlt});
  }
  EXPECT_EQ(events, Events{});
}

TEST_F(AboutTest, ContactBoxNamesTheAuthorInTheLanguageOfTheMoment) {
  AboutWindow window(state, forms, dialogs);
  for (const std::int16_t base : {std::int16_t{0}, std::int16_t{1000}}) {
    events.clear();
    state.ResBase = base;
    Click(window, {5, 5}, {Qt::RightButton, kShift | kCtrl | kAlt});
    ASSERT_EQ(events.size(), 1u);
    EXPECT_NE(events[0].find(std::string(state.Message(41)) + "\r\rContact: "), std::string::npos)
        << events[0];
  }
}

}  // namespace
}  // namespace orvane::test
