#include "ui/schedule_window.h"

#include <QRegularExpression>
#include <QTest>

#include "ui/opened_window.h"

namespace orvane::test {
namespace {

const std::string kPath = "/prog/systimer.ini";

struct ScheduleWindowTest : OpenedWindow {
  void OpenEditor(const ScheduleLook& look) {
    Open(new ScheduleWindow(look, state, schedule, forms));
  }

  ScheduleFile schedule{state, disk, host};

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
      {WeekLook(), "[weekly]", 14, {"3Enable=1", "1On=on_1", "7Off=off_7"}},
      {SpecialLook(), "[Special]", 21, {"1On=on_1", "7Off=off_7", "1Date=date_1"}},
      {SelfTestLook(), "[SelfTestToLow]", 14, {"1On=on_1", "7Date=date_7"}},
  };
  for (const auto& row : cases) {
    disk.files.clear();
    OpenEditor(row.look);
    for (auto* box : window->findChildren<QLineEdit*>()) QTest::keyClicks(box, box->objectName());
    Push("enabled_3");
    Push("ok");
    const QStringList lines = QString::fromStdString(disk.files[kPath]).split("\r\n");
    EXPECT_EQ(lines[0], row.section);
    EXPECT_EQ(lines.filter(QRegularExpression("=[a-z]+_")).size(), row.boxes) << row.section;
    for (const QString& entry : row.entries) EXPECT_TRUE(lines.contains(entry)) << row.section;
  }
  EXPECT_EQ(state.ScheduleEnable[3], '1');
  EXPECT_EQ(state.ScheduleOff[7], "off_7");
  EXPECT_EQ(state.ScheduleDate[8], "date_1");
}

TEST_F(ScheduleWindowTest, EnterAcceptsAndEscapeLeaves) {
  const struct {
    const char* focus;
    Qt::Key key;
    bool written;
  } cases[] = {{"on_1", Qt::Key_Return, true},
               {"on_1", Qt::Key_Escape, false},
               {"cancel", Qt::Key_Return, false},
               {"ok", Qt::Key_Enter, true}};
  for (const auto& [focus, key, written] : cases) {
    SCOPED_TRACE(focus);
    disk.files.clear();
    events.clear();
    forms.open = {Form::kWeek};
    OpenEditor(WeekLook());
    QWidget& part = Part(*window, focus);
    part.setFocus();
    QTest::keyClick(&part, key);
    EXPECT_EQ(disk.files.contains(kPath), written);
    EXPECT_EQ(events, Events{"Unload week"});
  }
}

TEST_F(ScheduleWindowTest, TabGoesAlongTheRows) {
  const std::pair<const ScheduleLook&, QString> walks[] = {
      {WeekLook(), "enabled_1 on_1 off_1 enabled_2"},
      {SpecialLook(), "enabled_1 date_1 on_1 off_1 enabled_2"},
      {SelfTestLook(), "enabled_1 date_1 on_1 enabled_2"}};
  for (const auto& [look, walk] : walks) {
    OpenEditor(look);
    Part(*window, "enabled_1").setFocus();
    QString walked("enabled_1");
    while (walked.size() < walk.size()) {
      QTest::keyClick(window->focusWidget(), Qt::Key_Tab);
      walked += ' ' + Focused();
    }
    EXPECT_EQ(walked, walk);
  }
}

TEST_F(ScheduleWindowTest, SlipsAreTintedWhileTyping) {
  disk.files[kPath] =
      "[Special]\n2Date=2001-02-30\n3Date=2001-02-28\n2On=25:00\n3On=2001-5-1\n3Off=8 "
      "pm\n4Date=8:00\n5Date= \n";
  OpenEditor(SpecialLook());
  for (const char* box : {"date_2", "on_2", "on_3", "date_4"}) EXPECT_TRUE(Tinted(box)) << box;
  for (const char* box : {"date_3", "off_3", "date_5"}) EXPECT_FALSE(Tinted(box)) << box;
  std::string seen;
  for (const char c : std::string("8:305")) {
    QTest::keyClick(&Box("on_1"), c);
    seen += Tinted("on_1") ? 'x' : '.';
  }
  EXPECT_EQ(seen, "xxx.x");
}

}  // namespace
}  // namespace orvane::test
