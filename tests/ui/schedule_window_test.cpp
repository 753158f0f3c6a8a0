#include "ui/schedule_window.h"

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <memory>

#include "support/world.h"
#include "ui/pointer.h"

namespace orvane::test {
namespace {

const std::string kPath = "/prog/systimer.ini";

struct ScheduleWindowTest : testing::Test, World {
  void Open(const ScheduleLook& look) {
    forms.open.insert(look.form);
    window = std::make_unique<ScheduleWindow>(look, state, seams);
    Present(*window);
  }

  QLineEdit& Box(int index) { return Part<QLineEdit>(*window, QString("txtTime(%1)").arg(index)); }
  void Press(const char* button) { Part<QAbstractButton>(*window, button).click(); }
  bool Tinted(int index) {
    return Box(index).palette().color(QPalette::Base) != window->palette().color(QPalette::Base);
  }

  std::unique_ptr<ScheduleWindow> window;
};

TEST_F(ScheduleWindowTest, WhatIsTypedIsWhatTheFileHolds) {
  Open(WeekLook());
  Press("Check1(0)");
  QTest::keyClicks(&Box(0), "8:00");
  QTest::keyClicks(&Box(7), " 18:00 ");
  QTest::keyClicks(&Box(13), "whatever");
  Press("cmdEnter");
  const std::string file = disk.files[kPath];
  EXPECT_TRUE(file.starts_with("[weekly]\r\n1Enable=1\r\n2Enable=0\r\n")) << file;
  EXPECT_NE(file.find("\r\n1On=8:00\r\n2On=\r\n"), std::string::npos) << file;
  EXPECT_NE(file.find("\r\n1Off=\" 18:00 \"\r\n2Off=\r\n"), std::string::npos) << file;
  EXPECT_TRUE(file.ends_with("\r\n7Off=whatever\r\n")) << file;
  EXPECT_EQ(state.ScheduleEnable[1], '1');
  EXPECT_EQ(state.ScheduleOff[7], "whatever");
  EXPECT_FALSE(forms.open.contains(Form::frmWeek));
}

TEST_F(ScheduleWindowTest, EachEditorReachesItsOwnSlots) {
  Open(SpecialLook());
  Press("Check1(6)");
  QTest::keyClicks(&Box(20), "2001-5-1");
  QTest::keyClicks(&Box(6), "8:00");
  QTest::keyClicks(&Box(13), "9:00");
  Press("cmdEnter");
  Open(SelfTestLook());
  EXPECT_FALSE(window->findChild<QLineEdit*>("txtTime(7)"));
  QTest::keyClicks(&Box(14), "2002-5-1");
  QTest::keyClicks(&Box(0), "7:00");
  Press("cmdEnter");
  EXPECT_EQ(state.ScheduleEnable[14], '1');
  EXPECT_EQ(state.ScheduleDate[7], "2001-5-1");
  EXPECT_EQ(state.ScheduleOn[14], "8:00");
  EXPECT_EQ(state.ScheduleOff[14], "9:00");
  EXPECT_EQ(state.ScheduleDate[8], "2002-5-1");
  EXPECT_EQ(state.ScheduleOn[15], "7:00");
}

TEST_F(ScheduleWindowTest, EnterAcceptsAndEscapeLeaves) {
  struct Case {
    const char* focus;
    Qt::Key key;
    bool written;
  };
  const Case cases[] = {{"txtTime(0)", Qt::Key_Return, true},  {"Check1(3)", Qt::Key_Enter, true},
                        {"txtTime(0)", Qt::Key_Escape, false}, {"cmdEnter", Qt::Key_Escape, false},
                        {"cmdCancel", Qt::Key_Return, false},  {"cmdEnter", Qt::Key_Return, true}};
  for (const Case& row : cases) {
    SCOPED_TRACE(row.focus);
    disk.files.clear();
    events.clear();
    Open(WeekLook());
    Box(0).setText("8:00");
    QWidget& focus = Part(*window, row.focus);
    focus.setFocus();
    QTest::keyClick(&focus, row.key);
    EXPECT_EQ(disk.files.contains(kPath), row.written);
    EXPECT_EQ(events, Events{"Unload frmWeek"});
  }
}

TEST_F(ScheduleWindowTest, TabGoesAlongTheRows) {
  struct Case {
    const ScheduleLook& look;
    const char* walk;  // from the first row into the second
  };
  for (const Case& row :
       {Case{WeekLook(), "Check1(0) txtTime(0) txtTime(7) Check1(1)"},
        Case{SpecialLook(), "Check1(0) txtTime(14) txtTime(0) txtTime(7) Check1(1)"},
        Case{SelfTestLook(), "Check1(0) txtTime(14) txtTime(0) Check1(1)"}}) {
    Open(row.look);
    Part(*window, "Check1(0)").setFocus();
    QStringList walked("Check1(0)");
    while (walked.size() < QString(row.walk).count(' ') + 1) {
      QTest::keyClick(window->focusWidget(), Qt::Key_Tab);
      walked << window->focusWidget()->objectName();
    }
    EXPECT_EQ(walked.join(' '), row.walk);
  }
}

TEST_F(ScheduleWindowTest, SlipsAreTintedWhileTyping) {
  disk.files[kPath] = "[Special]\n2Date=2001-02-30\n3Date=2001-02-28\n2On=25:00\n";
  Open(SpecialLook());
  EXPECT_TRUE(Tinted(15));
  EXPECT_FALSE(Tinted(16));
  EXPECT_TRUE(Tinted(1));
  std::string seen;
  for (const char c : std::string("8:305")) {
    QTest::keyClick(&Box(0), c);
    seen += Tinted(0) ? 'x' : '.';
  }
  EXPECT_EQ(seen, "xxx.x");
  EXPECT_NE(Box(0).toolTip(), "");
  Box(0).clear();
  EXPECT_FALSE(Tinted(0));
  EXPECT_EQ(Box(0).toolTip(), "");
}

TEST_F(ScheduleWindowTest, SpeaksTheLanguageOfItsLoad) {
  struct Case {
    const ScheduleLook& look;
    std::int16_t base;
    const char *title, *head, *last;
  };
  for (const Case& row : {Case{WeekLook(), 1000, "一周设定", "关闭UPS", "星期日"},
                          Case{WeekLook(), 0, "WEEK Setting", "ShutDown", "Sun"},
                          Case{SpecialLook(), 1000, "特别日设定", "关闭UPS", "特别日七"},
                          Case{SpecialLook(), 0, "Special Setting", "ShutDown", "EventDate7"}}) {
    state.ResBase = row.base;
    Open(row.look);
    EXPECT_EQ(window->windowTitle(), row.title);
    EXPECT_EQ(TextOf(*window, "Label1(2)"), row.head);
    EXPECT_EQ(TextOf(*window, "Check1(6)"), row.last);
  }
}

}  // namespace
}  // namespace orvane::test
