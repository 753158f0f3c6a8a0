// The main form: its menus and words, and its two faces: what moves on them, what is painted, and
// how they change.
#include <gtest/gtest.h>

#include <QAction>
#include <QImage>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <QTest>
#include <string>

#include "app/captions.h"
#include "support/running_program.h"
#include "ui/dial_face.h"
#include "ui/main_window.h"
#include "ui/parts.h"

namespace orvane::test {
namespace {

struct MainWindowTest : testing::Test, RunningProgram {
  MainWindowTest() : RunningProgram(Language::kEnglish) {
    forms.open.insert(Form::kMain);
    Start();
    Present(window);
  }

  MainWindow window{state, panel, form};
  QWidget& bars = Part(window, "bar_face");
  DialFace& dials = Part<DialFace>(window, "dial_face");
};

// Each menu with its entries in order, and what a click on it does to the windows or sends.
TEST_F(MainWindowTest, MenusStandInOrderAndAct) {
  const std::vector<std::string> expected = {
      "system_menu: settings Show settings | beeper Q\r | exit Unload main",
      "schedule_menu: week Show week special_days Show special_days | self_tests Show self_tests",
      "analysis_menu: log Show log day_history Show day_history history Show history | "
      "shutdown_report Show shutdown_report",
      "control_menu: short_test T\r test_to_low TL\r cancel_test CT\r | shutdown Ask [Orvane] Are "
      "you sure to shutdown? | protection_check Show protection_check",
      "help_menu: about Show about"};
  std::vector<std::string> menus;
  for (const QAction* top : window.menuBar()->actions()) {
    std::string& menu = menus.emplace_back(top->menu()->objectName().toStdString() + ':');
    for (QAction* entry : top->menu()->actions()) {
      if (!entry->isVisible()) continue;
      events = {""};
      ups_port.sent.clear();
      entry->trigger();
      menu += entry->isSeparator() ? " |" : ' ' + entry->objectName().toStdString() + ' ';
      menu += ups_port.Wire() + events.back();
      EXPECT_TRUE(entry->isSeparator() || entry->text().contains('&')) << "no key in " << menu;
    }
  }
  EXPECT_EQ(menus, expected);
}

// The listings hold the words of each language by itself.
TEST_F(MainWindowTest, ChangesItsWordsWithTheLanguage) {
  state.language = Language::kChinese;
  SetCaptions(state, panel);
  EXPECT_EQ(Part(window, "input_read_out").accessibleName(), "输入电压, 0 V");
  EXPECT_EQ(window.menuBar()->actions()[0]->text(), "系统(&S)");
  EXPECT_EQ(Part<QAction>(window, "log").text(), "事件记录(&L)");
  EXPECT_EQ(TextOf(window, "temperature_bar_caption"), "机内温度");
  EXPECT_EQ(TextOf(window, "information_heading"), "UPS基本信息");
}

// Only what changed is painted, and what has moved leaves nothing behind.
TEST_F(MainWindowTest, ScreenShowsWhatAWholeRepaintWould) {
  for (const std::string load : {"160", "035", "000", "125", "017"}) {
    status.load = load;
    for (const char* bits : {"1010", "0000"}) {
      status.bits = bits;
      Poll();
      QApplication::processEvents();
      const QImage screen = window.screen()->grabWindow(window.winId()).toImage();
      const QImage whole = window.grab().toImage();
      // A line that is painted in part may be smoothed a little otherwise.
      EXPECT_EQ(Difference(screen, whole, 8), "") << load << ' ' << bits;
    }
    if (load == "000") form.ShowDials();
  }
}

TEST_F(MainWindowTest, DoubleClickAnywhereOnAFaceAndF6ChangeIt) {
  for (QWidget* face : {&bars, static_cast<QWidget*>(&dials)}) {
    ASSERT_TRUE(face->isVisible());
    for (QWidget* part : face->findChildren<QWidget*>()) {
      if (!part->isVisible()) continue;
      QTest::mouseDClick(part, Qt::LeftButton);
      ASSERT_FALSE(face->isVisible()) << part->objectName().toStdString();
      QTest::keyClick(&window, Qt::Key_F6);
      ASSERT_TRUE(face->isVisible()) << part->objectName().toStdString();
    }
    for (const char* outside : {"states", "information", "status"}) {
      QTest::mouseDClick(&Part(window, outside), Qt::LeftButton);
      EXPECT_TRUE(face->isVisible()) << outside;
    }
    QTest::mouseDClick(face, Qt::RightButton, {}, {2, 2});
    EXPECT_TRUE(face->isVisible());
    QTest::mouseDClick(face, Qt::LeftButton, {}, {2, 2});
    EXPECT_FALSE(face->isVisible());
  }
  EXPECT_TRUE(bars.isVisible());
}

}  // namespace
}  // namespace orvane::test
