#include "ui/settings_window.h"

#include <QClipboard>
#include <QComboBox>
#include <QGuiApplication>
#include <QMenu>
#include <QTest>

#include "app/settings.h"
#include "frame/main_form.h"
#include "ui/opened_window.h"

namespace orvane::test {
namespace {

constexpr const char* kNothingSet = "1,0,0,0,0,0,0,0,1,0,\"\",0";

struct SettingsWindowTest : OpenedWindow {
  void OpenWith(const std::string& line) {
    ParseSettings(line, state);
    Open(new SettingsWindow(main, forms, dialogs));
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
    Push("save");
    return disk.files["/prog/Orvane.ini"];
  }

  MainForm main{state, panel, seams};
};

TEST_F(SettingsWindowTest, ShowsTheSettingsAndSavesThemUnchanged) {
  const struct {
    std::string line;
    const char *ticked, *first, *last;  // first and last of the number boxes
    int period, language;
  } cases[] = {
      {"2,30,0,5,0,2,31,1,3,110,\"119\",1",
       "call_for_battery_low call_for_mains modem_port_3 ups_port_2", "30", "31", 1, 1},
      // Values that have no control leave nothing chosen.
      {"9,-5,0,12345,0,0,0,11,0,0,\"\",7", "", "-5", "0", -1, -1},
  };
  for (const auto& row : cases) {
    OpenWith(row.line);
    EXPECT_EQ(Ticked(), row.ticked);
    EXPECT_EQ(Box("mains_minutes").text(), row.first);
    EXPECT_EQ(Box("warning_period_seconds").text(), row.last);
    EXPECT_EQ(Choice("shutdown_delay").currentIndex(), row.period);
    EXPECT_EQ(Choice("language").currentIndex(), row.language);
    EXPECT_EQ(Save(), row.line + "\r\n");
  }
}

TEST_F(SettingsWindowTest, KeysComeToTheChosenPorts) {
  OpenWith("2,0,0,0,0,0,0,0,3,0,\"\",0");
  EXPECT_EQ(Focused(), "ups_port_2");
  Choice("shutdown_delay").setFocus();
  QTest::keyClick(&Choice("shutdown_delay"), Qt::Key_Tab);
  EXPECT_EQ(Focused(), "modem_port_3");
}

TEST_F(SettingsWindowTest, EveryControlWritesItsSlot) {
  OpenWith(kNothingSet);
  for (const char* name : {"mains_minutes", "mains_seconds", "low_minutes", "low_seconds",
                           "warning_minutes", "warning_period_seconds"}) {
    Type(name, "98765");
  }
  QTest::keyClick(&Choice("shutdown_delay"), Qt::Key_End);
  // The two groups of ports are exclusive each for itself.
  for (const char* name : {"ups_port_4", "modem_port_1", "modem_port_4", "ups_port_1",
                           "call_for_battery_low", "call_for_ups"}) {
    Push(name);
  }
  Type("phone", "0,\"119\" x");
  QTest::keyClick(&Choice("language"), Qt::Key_Down);
  EXPECT_EQ(Save(), "1,987,98,987,98,98,987,10,4,11,\"0,119 x\",1\r\n");
  EXPECT_EQ(state.language, Language::kChinese);
  EXPECT_EQ(state.ShutdownCommand, "S10");
  EXPECT_EQ(state.ShutdownCountdown, 987 * 60 + 98);
}

TEST_F(SettingsWindowTest, BoxesTakeWhatTheirRulesAllow) {
  OpenWith(kNothingSet);
  auto& box = Box("mains_minutes");
  box.setFocus();
  QTest::keyClicks(&box, "a-1. x");
  EXPECT_EQ(box.text(), "01");
  box.clear();
  // Its menu only borrows the keyboard, and is about to act on what stands here.
  QMenu menu;
  menu.popup({});
  EXPECT_EQ(box.text(), "");
  menu.close();
  Box("mains_seconds").setFocus();
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
