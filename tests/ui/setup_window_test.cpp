#include "ui/setup_window.h"

#include <QClipboard>
#include <QComboBox>
#include <QGuiApplication>
#include <QMenu>
#include <QTest>

#include "app/settings.h"
#include "ui/opened_window.h"

namespace orvane::test {
namespace {

constexpr const char* kNothingSet = "1,0,0,0,0,0,0,0,1,0,\"\",0";

struct SetupWindowTest : OpenedWindow {
  void OpenWith(const std::string& line) {
    ParseSettings(line, state);
    Open(new SetupWindow(state, panel, main, seams));
  }

  QComboBox& Choice(const QString& name) { return Part<QComboBox>(*window, name); }

  // Types over what a box holds.
  void Type(const QString& name, const QString& keys) {
    Box(name).selectAll();
    QTest::keyClicks(&Box(name), keys);
  }

  QString Ticked() {
    QStringList names;
    for (const auto* button : window->findChildren<QAbstractButton*>()) {
      if (button->isChecked()) names << button->objectName();
    }
    names.sort();
    return names.join(' ');
  }

  std::string Save() {
    Push("cmdSave");
    return disk.files["/prog/Orvane.ini"];
  }

  FrmMain main{state, panel, seams};
};

TEST_F(SetupWindowTest, ShowsTheSettingsAndSavesThemUnchanged) {
  const struct {
    std::string line;
    const char *ticked, *first, *last;  // first and last of the number boxes
    int period, language;
  } cases[] = {
      {"2,30,0,5,0,2,31,1,3,110,\"119\",1", "Check1(1) Check1(2) OptCom(2) OptCom(7)", "30", "31",
       1, 1},
      // Values that have no control leave nothing chosen.
      {"9,-5,0,12345,0,0,0,11,0,0,\"\",7", "", "-5", "0", -1, -1},
  };
  for (const auto& row : cases) {
    OpenWith(row.line);
    EXPECT_EQ(Ticked(), row.ticked);
    EXPECT_EQ(Box("txt(0)").text(), row.first);
    EXPECT_EQ(Box("txt(5)").text(), row.last);
    EXPECT_EQ(Choice("cob").currentIndex(), row.period);
    EXPECT_EQ(Choice("cobLanguege").currentIndex(), row.language);
    EXPECT_EQ(Save(), row.line + "\r\n");
  }
}

TEST_F(SetupWindowTest, KeysComeToTheChosenPorts) {
  OpenWith("2,0,0,0,0,0,0,0,3,0,\"\",0");
  EXPECT_EQ(Focused(), "OptCom(2)");
  Choice("cob").setFocus();
  QTest::keyClick(&Choice("cob"), Qt::Key_Tab);
  EXPECT_EQ(Focused(), "OptCom(7)");
}

TEST_F(SetupWindowTest, EveryControlWritesItsSlot) {
  OpenWith(kNothingSet);
  for (int i = 0; i < 6; ++i) Type(QString("txt(%1)").arg(i), "98765");
  QTest::keyClick(&Choice("cob"), Qt::Key_End);
  // The two groups of ports are exclusive each for itself.
  for (const char* name :
       {"OptCom(4)", "OptCom(9)", "OptCom(6)", "OptCom(1)", "Check1(2)", "Check1(3)"}) {
    Push(name);
  }
  Type("txtPhone", "0,\"119\" x");
  QTest::keyClick(&Choice("cobLanguege"), Qt::Key_Down);
  EXPECT_EQ(Save(), "1,987,98,987,98,98,987,10,4,11,\"0,119 x\",1\r\n");
  EXPECT_EQ(state.ResBase, 1000);
  EXPECT_EQ(state.ShutdownCommand, "S10");
  EXPECT_EQ(state.ShutdownCountdown, 987 * 60 + 98);
}

TEST_F(SetupWindowTest, BoxesTakeWhatTheirRulesAllow) {
  OpenWith(kNothingSet);
  auto& box = Box("txt(0)");
  box.setFocus();
  QTest::keyClicks(&box, "a-1. x");
  EXPECT_EQ(box.text(), "01");
  box.clear();
  // Its menu only borrows the keyboard, and is about to act on what stands here.
  QMenu menu;
  menu.popup({});
  EXPECT_EQ(box.text(), "");
  menu.close();
  Box("txt(1)").setFocus();
  EXPECT_EQ(box.text(), "0");
  // What cannot be typed can be pasted, up to the box's length; it is no number.
  QGuiApplication::clipboard()->setText("5xyz");
  box.selectAll();
  box.paste();
  EXPECT_EQ(box.text(), "5xy");
  EXPECT_EQ(Save(), kNothingSet + std::string("\r\n"));
}

}  // namespace
}  // namespace orvane::test
