#include "ui/schedule_window.h"

#include <QTest>

#include "ui/opened_window.h"

namespace orvane::test {
namespace {

const std::string kPath = "/prog/systimer.ini";

struct ScheduleWindowTest : OpenedWindow {
  void OpenEditor(const ScheduleLook& look) { Open(new ScheduleWindow(look, state, seams)); }

  bool Tinted(const char* box) {
    return Box(box).palette().color(QPalette::Base) != window->palette().color(QPalette::Base);
  }
};

TEST_F(ScheduleWindowTest, WhatIsTypedIsWhatTheFileHolds) {
  const struct {
    const ScheduleLook& look;
    const char* section;
    qsizetype boxes;
    QStringList entries;  // some of them, with every box filled with its own name
  } cases[] = {
      {WeekLook(), "[weekly]", 14, {"3Enable=1", "1On=txtTime(0)", "7Off=txtTime(13)"}},
      {SpecialLook(), "[Special]", 21, {"1On=txtTime(0)", "7Off=txtTime(13)", "1Date=txtTime(14)"}},
      {SelfTestLook(), "[SelfTestToLow]", 14, {"1On=txtTime(0)", "7Date=txtTime(20)"}},
  };
  for (const auto& row : cases) {
    disk.files.clear();
    OpenEditor(row.look);
    for (auto* box : window->findChildren<QLineEdit*>()) QTest::keyClicks(box, box->objectName());
    Push("Check1(2)");
    Push("cmdEnter");
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
  const struct {
    const char* focus;
    Qt::Key key;
    bool written;
  } cases[] = {{"txtTime(0)", Qt::Key_Return, true},
               {"txtTime(0)", Qt::Key_Escape, false},
               {"cmdCancel", Qt::Key_Return, false},
               {"cmdEnter", Qt::Key_Enter, true}};
  for (const auto& [focus, key, written] : cases) {
    SCOPED_TRACE(focus);
    disk.files.clear();
    events.clear();
    forms.open = {Form::frmWeek};
    OpenEditor(WeekLook());
    QWidget& part = Part(*window, focus);
    part.setFocus();
    QTest::keyClick(&part, key);
    EXPECT_EQ(disk.files.contains(kPath), written);
    EXPECT_EQ(events, Events{"Unload frmWeek"});
  }
}

TEST_F(ScheduleWindowTest, TabGoesAlongTheRows) {
  const std::pair<const ScheduleLook&, QString> walks[] = {
      {WeekLook(), "Check1(0) txtTime(0) txtTime(7) Check1(1)"},
      {SpecialLook(), "Check1(0) txtTime(14) txtTime(0) txtTime(7) Check1(1)"},
      {SelfTestLook(), "Check1(0) txtTime(14) txtTime(0) Check1(1)"}};
  for (const auto& [look, walk] : walks) {
    OpenEditor(look);
    Part(*window, "Check1(0)").setFocus();
    QString walked("Check1(0)");
    while (walked.size() < walk.size()) {
      QTest::keyClick(window->focusWidget(), Qt::Key_Tab);
      walked += ' ' + Focused();
    }
    EXPECT_EQ(walked, walk);
  }
}

TEST_F(ScheduleWindowTest, SlipsAreTintedWhileTyping) {
  disk.files[kPath] = "[Special]\n2Date=2001-02-30\n3Date=2001-02-28\n2On=25:00\n";
  OpenEditor(SpecialLook());
  EXPECT_TRUE(Tinted("txtTime(15)"));
  EXPECT_FALSE(Tinted("txtTime(16)"));
  EXPECT_TRUE(Tinted("txtTime(1)"));
  std::string seen;
  for (const char c : std::string("8:305")) {
    QTest::keyClick(&Box("txtTime(0)"), c);
    seen += Tinted("txtTime(0)") ? 'x' : '.';
  }
  EXPECT_EQ(seen, "xxx.x");
}

}  // namespace
}  // namespace orvane::test
