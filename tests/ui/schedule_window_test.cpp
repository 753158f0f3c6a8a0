#include "ui/schedule_window.h"

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <memory>

#include "support/world.h"

namespace orvane::test {
namespace {

const std::string kPath = "/prog/systimer.ini";

class ScheduleWindowTest : public testing::Test, public World {
 protected:
  ScheduleWindow& Open(const ScheduleLook& look) {
    forms.open.insert(look.form);
    window = std::make_unique<ScheduleWindow>(look, state, seams);
    window->show();
    window->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(window.get()));
    return *window;
  }

  QLineEdit& Box(int index) {
    auto* box = window->findChild<QLineEdit*>(QString("txtTime(%1)").arg(index));
    EXPECT_TRUE(box) << index;
    return *box;
  }

  QCheckBox& Check(int index) {
    return *window->findChild<QCheckBox*>(QString("Check1(%1)").arg(index));
  }

  QString Head(int index) {
    auto* label = window->findChild<QLabel*>(QString("Label1(%1)").arg(index));
    return label ? label->text() : QString();
  }

  void Click(const char* button) {
    QTest::mouseClick(window->findChild<QPushButton*>(button), Qt::LeftButton);
  }

  bool Tinted(int index) {
    return Box(index).palette().color(QPalette::Base) != window->palette().color(QPalette::Base);
  }

  std::unique_ptr<ScheduleWindow> window;
};

TEST_F(ScheduleWindowTest, WhatIsTypedIsWhatTheFileHolds) {
  Open(WeekLook());
  Check(0).click();
  QTest::keyClicks(&Box(0), "8:00");
  QTest::keyClicks(&Box(7), " 18:00 ");
  QTest::keyClicks(&Box(13), "whatever");
  Click("cmdEnter");
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
  Check(6).click();
  QTest::keyClicks(&Box(20), "2001-5-1");
  QTest::keyClicks(&Box(6), "8:00");
  QTest::keyClicks(&Box(13), "9:00");
  Click("cmdEnter");
  Open(SelfTestLook());
  EXPECT_FALSE(window->findChild<QLineEdit*>("txtTime(7)"));
  QTest::keyClicks(&Box(14), "2002-5-1");
  QTest::keyClicks(&Box(0), "7:00");
  Click("cmdEnter");
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
  const Case cases[] = {{"txtTime(0)", Qt::Key_Return, true}, {"txtTime(0)", Qt::Key_Enter, true},
                        {"Check1(3)", Qt::Key_Return, true},  {"txtTime(0)", Qt::Key_Escape, false},
                        {"cmdEnter", Qt::Key_Escape, false},  {"cmdCancel", Qt::Key_Return, false},
                        {"cmdEnter", Qt::Key_Return, true}};
  for (const Case& row : cases) {
    SCOPED_TRACE(row.focus);
    disk.files.clear();
    events.clear();
    Open(WeekLook());
    Box(0).setText("8:00");
    auto* focus = window->findChild<QWidget*>(row.focus);
    focus->setFocus();
    QTest::keyClick(focus, row.key);
    EXPECT_EQ(disk.files.contains(kPath), row.written);
    EXPECT_EQ(events, Events{"Unload frmWeek"});
  }
}

TEST_F(ScheduleWindowTest, TabGoesAlongTheRows) {
  struct Case {
    const ScheduleLook& look;
    std::vector<int> row;  // of the first
  };
  for (const Case& row :
       {Case{WeekLook(), {0, 7}}, Case{SpecialLook(), {14, 0, 7}}, Case{SelfTestLook(), {14, 0}}}) {
    Open(row.look);
    QStringList expected;
    for (int line = 0; line < 7; ++line) {
      expected << QString("Check1(%1)").arg(line);
      for (const int index : row.row) expected << QString("txtTime(%1)").arg(index + line);
    }
    expected << "cmdEnter"
             << "cmdCancel";
    Check(0).setFocus();
    QStringList walked;
    for (int step = 0; step < expected.size(); ++step) {
      walked << window->focusWidget()->objectName();
      QTest::keyClick(window->focusWidget(), Qt::Key_Tab);
    }
    EXPECT_EQ(walked, expected) << walked.join(' ').toStdString();
  }
}

TEST_F(ScheduleWindowTest, SlipsAreTintedWhileTyping) {
  disk.files[kPath] = "[Special]\n2Date=2001-02-30\n3Date=2001-02-28\n2On=25:00\n";
  Open(SpecialLook());
  EXPECT_TRUE(Tinted(15));
  EXPECT_FALSE(Tinted(16));
  EXPECT_TRUE(Tinted(1));
  EXPECT_FALSE(Tinted(0));
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
    std::int16_t base;
    const ScheduleLook& look;
    const char* title;
    std::vector<const char*> heads;
    const char* first;
    const char* last;
    const char* enter;
    const char* cancel;
  };
  const Case cases[] = {
      {1000,
       WeekLook(),
       "一周设定",
       {"星  期", "开启UPS", "关闭UPS"},
       "星期一",
       "星期日",
       "确  定",
       "取  消"},
      {0,
       WeekLook(),
       "WEEK Setting",
       {"WEEK", "StartUp", "ShutDown"},
       "Mon",
       "Sun",
       "OK",
       "Cancel"},
      {1000,
       SpecialLook(),
       "特别日设定",
       {"日  期", "开启UPS", "关闭UPS"},
       "特别日一",
       "特别日七",
       "确  定",
       "取  消"},
      {0,
       SpecialLook(),
       "Special Setting",
       {"Date", "StartUp", "ShutDown"},
       "EventDate1",
       "EventDate7",
       "OK",
       "Cancel"},
      {1000,
       SelfTestLook(),
       "UPS自测至低电量设定",
       {"日  期", "UPS自测时间", ""},
       "特别日一",
       "特别日七",
       "确  定",
       "取  消"},
      {0,
       SelfTestLook(),
       "SelfTestToLow Setting",
       {"Date", "SelfTest Time", ""},
       "EventDate1",
       "EventDate7",
       "OK",
       "Cancel"},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.title);
    state.ResBase = row.base;
    Open(row.look);
    EXPECT_EQ(window->windowTitle(), row.title);
    for (int i = 0; i < 3; ++i) EXPECT_EQ(Head(i), row.heads[static_cast<std::size_t>(i)]);
    EXPECT_EQ(Check(0).text(), row.first);
    EXPECT_EQ(Check(6).text(), row.last);
    EXPECT_EQ(window->findChild<QPushButton*>("cmdEnter")->text(), row.enter);
    EXPECT_EQ(window->findChild<QPushButton*>("cmdCancel")->text(), row.cancel);
  }
}

}  // namespace
}  // namespace orvane::test
