#include "ui/schedule_window.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QLineEdit>
#include <QTest>
#include <memory>

#include "support/world.h"
#include "ui/pointer.h"

namespace orvane::test {
namespace {

const std::string kPath = "/prog/systimer.ini";

struct ScheduleWindowTest : testing::Test, World {
  void Open(const ScheduleLook& look) {
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
  struct Case {
    const ScheduleLook& look;
    const char* section;
    qsizetype boxes;
    QStringList entries;  // some of them, with every box filled with its own name
  };
  const Case cases[] = {
      {WeekLook(), "[weekly]", 14, {"3Enable=1", "1On=txtTime(0)", "7Off=txtTime(13)"}},
      {SpecialLook(), "[Special]", 21, {"1On=txtTime(0)", "7Off=txtTime(13)", "1Date=txtTime(14)"}},
      {SelfTestLook(), "[SelfTestToLow]", 14, {"1On=txtTime(0)", "7Date=txtTime(20)"}},
  };
  for (const Case& row : cases) {
    disk.files.clear();
    Open(row.look);
    for (auto* box : window->findChildren<QLineEdit*>()) QTest::keyClicks(box, box->objectName());
    Press("Check1(2)");
    Press("cmdEnter");
    const QStringList lines = QString::fromStdString(disk.files[kPath]).split("\r\n");
    EXPECT_EQ(lines[0], row.section);
    EXPECT_EQ(lines.filter("=txtTime").size(), row.boxes) << row.section;
    for (const QString& entry : row.entries) EXPECT_TRUE(lines.contains(entry)) << row.section;
  }
  EXPECT_EQ(state.ScheduleEnable[3], '1');
  EXPECT_EQ(state.ScheduleOff[7], "txtTime(13)");
  EXPECT_EQ(state.ScheduleDate[8], "txtTime(14)");
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
    forms.open = {Form::frmWeek};
    Open(WeekLook());
    QWidget& focus = Part(*window, row.focus);
    focus.setFocus();
    QTest::keyClick(&focus, row.key);
    EXPECT_EQ(disk.files.contains(kPath), row.written);
    EXPECT_EQ(events, Events{"Unload frmWeek"});
  }
}

TEST_F(ScheduleWindowTest, TabGoesAlongTheRows) {
  const std::pair<const ScheduleLook&, QString> walks[] = {
      {WeekLook(), "Check1(0) txtTime(0) txtTime(7) Check1(1)"},
      {SpecialLook(), "Check1(0) txtTime(14) txtTime(0) txtTime(7) Check1(1)"},
      {SelfTestLook(), "Check1(0) txtTime(14) txtTime(0) Check1(1)"}};
  for (const auto& [look, walk] : walks) {
    Open(look);
    Part(*window, "Check1(0)").setFocus();
    QString walked("Check1(0)");
    while (walked.size() < walk.size()) {
      QTest::keyClick(window->focusWidget(), Qt::Key_Tab);
      walked += ' ' + window->focusWidget()->objectName();
    }
    EXPECT_EQ(walked, walk);
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

}  // namespace
}  // namespace orvane::test
