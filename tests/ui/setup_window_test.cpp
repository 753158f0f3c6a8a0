#include "ui/setup_window.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAccessible>
#include <QClipboard>
#include <QComboBox>
#include <QGuiApplication>
#include <QLineEdit>
#include <QMenu>
#include <QTest>
#include <memory>

#include "app/settings.h"
#include "support/world.h"
#include "ui/pointer.h"

namespace orvane::test {
namespace {

struct SetupWindowTest : testing::Test, World {
  void Open(const std::string& line) {
    ParseSettings(line, state);
    window = std::make_unique<SetupWindow>(state, panel, main, seams);
    Present(*window);
  }

  QLineEdit& Box(const QString& name) { return Part<QLineEdit>(*window, name); }
  QComboBox& Choice(const QString& name) { return Part<QComboBox>(*window, name); }
  void Tick(const QString& name) { Part<QAbstractButton>(*window, name).click(); }

  // Types over what a box holds, and pastes over it.
  void Type(const QString& name, const QString& keys) {
    Box(name).selectAll();
    QTest::keyClicks(&Box(name), keys);
  }
  void Paste(const QString& name, const QString& text) {
    QGuiApplication::clipboard()->setText(text);
    Box(name).selectAll();
    Box(name).paste();
  }

  QStringList Ticked() {
    QStringList names;
    for (const auto* button : window->findChildren<QAbstractButton*>()) {
      if (button->isChecked()) names << button->objectName();
    }
    names.sort();
    return names;
  }

  std::string Save() {
    Tick("cmdSave");
    return disk.files["/prog/Orvane.ini"];
  }

  FrmMain main{state, panel, seams};
  std::unique_ptr<SetupWindow> window;
};

TEST_F(SetupWindowTest, ShowsTheSettingsAndSavesThemUnchanged) {
  struct Case {
    std::string line;
    QStringList ticked;
    const char *first, *last;  // number boxes
    int period, language;
  };
  const QStringList ticked = {"Check1(1)", "Check1(2)", "OptCom(2)", "OptCom(7)"};
  const Case cases[] = {
      {"2,30,0,5,0,2,31,1,3,110,\"119\",1", ticked, "30", "31", 1, 1},
      // Values that have no control leave nothing chosen.
      {"9,-5,0,12345,0,0,0,11,0,0,\"\",7", {}, "-5", "0", -1, -1},
  };
  for (const Case& row : cases) {
    Open(row.line);
    EXPECT_EQ(Ticked(), row.ticked);
    EXPECT_EQ(Box("txt(0)").text(), row.first);
    EXPECT_EQ(Box("txt(5)").text(), row.last);
    EXPECT_EQ(Choice("cob").currentIndex(), row.period);
    EXPECT_EQ(Choice("cobLanguege").currentIndex(), row.language);
    EXPECT_EQ(Save(), row.line + "\r\n");
  }
}

TEST_F(SetupWindowTest, KeysComeToTheChosenPortsAndReadersHearWhatAListIsAbout) {
  Open("2,0,0,0,0,0,0,0,3,0,\"\",0");
  EXPECT_EQ(window->focusWidget()->objectName(), "OptCom(2)");
  Choice("cob").setFocus();
  QTest::keyClick(&Choice("cob"), Qt::Key_Tab);
  EXPECT_EQ(window->focusWidget()->objectName(), "OptCom(7)");
  for (const char* name : {"cob", "cobLanguege"}) {
    const auto* list = QAccessible::queryAccessibleInterface(&Choice(name));
    const auto labels = list->relations(QAccessible::Label);
    ASSERT_EQ(labels.size(), 1) << name;
    EXPECT_FALSE(labels.front().first->text(QAccessible::Name).isEmpty());
  }
}

TEST_F(SetupWindowTest, EveryControlWritesItsSlot) {
  Open("1,0,0,0,0,0,0,0,1,0,\"\",0");
  for (int i = 0; i < 6; ++i) Type(QString("txt(%1)").arg(i), "98765");
  QTest::keyClick(&Choice("cob"), Qt::Key_End);
  // The two groups of ports are exclusive each for itself.
  for (const char* name : {"OptCom(4)", "OptCom(9)", "OptCom(6)", "OptCom(1)"}) Tick(name);
  for (const char* name : {"Check1(2)", "Check1(3)"}) Tick(name);
  Type("txtPhone", "0,\"119\" x");
  QTest::keyClick(&Choice("cobLanguege"), Qt::Key_Down);
  EXPECT_EQ(Save(), "1,987,98,987,98,98,987,10,4,11,\"0,119 x\",1\r\n");
  EXPECT_EQ(state.ResBase, 1000);
  EXPECT_EQ(state.ShutdownCommand, "S10");
  EXPECT_EQ(state.ShutdownCountdown, 987 * 60 + 98);
}

TEST_F(SetupWindowTest, BoxesTakeWhatTheirRulesAllow) {
  Open("1,0,0,0,0,0,0,0,1,0,\"\",0");
  auto& box = Box("txt(0)");
  box.setFocus();
  QTest::keyClicks(&box, "a-1. x");
  EXPECT_EQ(box.text(), "01");
  box.clear();
  Box("txt(1)").setFocus();
  EXPECT_EQ(box.text(), "0");
  // What cannot be typed can be pasted, up to the box's length; it is no number.
  Paste("txt(0)", "5xyz");
  EXPECT_EQ(box.text(), "5xy");
  Paste("txtPhone", "\"9\"");
  EXPECT_EQ(Save(), "1,0,0,0,0,0,0,0,1,0,\"9\",0\r\n");
}

// Its menu takes the keyboard from the box, and is about to act on what is selected there.
TEST_F(SetupWindowTest, MenuOfANumberBoxFindsItAsItWas) {
  Open("1,30,0,0,0,0,0,0,1,0,\"\",0");
  auto& box = Box("txt(0)");
  box.setFocus();
  for (const char* content : {"30", ""}) {
    box.setText(content);
    box.selectAll();
    QMenu menu;
    menu.popup({});
    EXPECT_EQ(box.text(), content);
    EXPECT_EQ(box.selectedText(), content);
    menu.close();
  }
}

}  // namespace
}  // namespace orvane::test
