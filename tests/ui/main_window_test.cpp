// The main form's areas, menus and words.
#include "ui/main_window.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <string>
#include <utility>

#include "app/captions.h"
#include "support/running_program.h"
#include "ui/parts.h"

namespace orvane::test {
namespace {

struct MainWindowTest : testing::Test, RunningProgram {
  MainWindowTest() : RunningProgram(Language::kEnglish) { forms.open.insert(Form::kMain); }

  MainWindow window{state, panel, form};
};

// Each menu with its entries in order, and what a click on it does to the windows or sends.
TEST_F(MainWindowTest, MenusStandInOrderAndAct) {
  const std::vector<std::string> expected = {
      "system_menu: settings Show settings | beeper Q\r | exit Unload main",
      "schedule_menu: week Show week special_days Show special_days | self_tests Show self_tests",
      "analysis_menu: log Show log day_history Show day_history history Show history | "
      "shutdown_report Show shutdown_report",
      "control_menu: short_test T\r test_to_low TL\r cancel_test CT\r | shutdown Ask [Orvane] Are "
      "you sure to shutdown?",
      "help_menu: about Show about"};
  Start();
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

TEST_F(MainWindowTest, ChangesItsWordsWithTheLanguage) {
  Start();
  Polls(2);
  EXPECT_EQ(Part(window, "input_read_out").accessibleName(), "Input voltage, 230 V");
  state.language = Language::kChinese;
  SetCaptions(state, panel);
  EXPECT_EQ(Part(window, "input_read_out").accessibleName(), "输入电压, 230 V");
  EXPECT_EQ(window.menuBar()->actions()[0]->text(), "系统(&S)");
  EXPECT_EQ(Part<QAction>(window, "log").text(), "事件记录(&L)");
  EXPECT_EQ(TextOf(window, "temperature_bar_caption"), "机内温度");
  EXPECT_EQ(TextOf(window, "information_heading"), "UPS基本信息");
}

TEST_F(MainWindowTest, StatesTakeTheColoursOfThePanel) {
  status.bits = "1010";
  Start();
  Polls(2);
  const QImage strip = Part(window, "states").grab().toImage();
  int left = 4;
  for (const char bit : status.bits) {
    const QImage place = strip.copy(std::exchange(left, left + 103), 0, 96, strip.height());
    EXPECT_EQ(CountOf({255, 0, 0}, place) > 0, bit == '1') << left;
    EXPECT_EQ(CountOf({0, 0, 255}, place) > 0, bit == '0') << left;
  }
}

}  // namespace
}  // namespace orvane::test
