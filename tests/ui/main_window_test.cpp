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
  MainWindowTest() : RunningProgram(Language::kEnglish) { forms.open.insert(Form::frmMain); }

  MainWindow window{state, panel, form};
};

// Each menu with its entries in order, and what a click on it does to the windows or sends.
TEST_F(MainWindowTest, MenusStandInOrderAndAct) {
  const std::vector<std::string> expected = {
      "mnuSystem: mnuSetup Show frmSetup | mnuOnOrOffBeep Q\r | mnuExit Unload frmMain",
      "mnuTimer: mnuWeek Show frmWeek mnuSpecial Show frmSpecial | mnuTestTimer Show frmSelfTest",
      "mnuDateAnalyse: mnuLog Show frmLog mnuDateRecord Show frmDateRc | mnuShutRec Show "
      "frmShutRec",
      "mnuControl: mnuTest10S T\r mnuTestToLow TL\r mnuCancelTest CT\r | mnuShutDown Ask "
      "[Orvane] Are you sure to shutdown?",
      "mnuHelp: mnuAbout Show frmAbout"};
  Start();
  std::vector<std::string> menus;
  for (const QAction* top : window.menuBar()->actions()) {
    std::string& menu = menus.emplace_back(top->menu()->objectName().toStdString() + ':');
    for (QAction* entry : top->menu()->actions()) {
      if (!entry->isVisible()) continue;
      events = {""};
      MSComm1.sent.clear();
      entry->trigger();
      menu += entry->isSeparator() ? " |" : ' ' + entry->objectName().toStdString() + ' ';
      menu += MSComm1.Wire() + events.back();
      EXPECT_TRUE(entry->isSeparator() || entry->text().contains('&')) << "no key in " << menu;
    }
  }
  EXPECT_EQ(menus, expected);
}

TEST_F(MainWindowTest, CanBeReadAndHeardInTheLanguageOfTheMoment) {
  Start();
  Polls(2);
  EXPECT_EQ(Part(window, "Label2(0)").accessibleName(), "Input voltage, 230 V");
  EXPECT_EQ(Part(window, "lblAc").accessibleName(), "AC: Normal");
  state.ResBase = kChineseBase;
  SetCaptions(state, panel);
  EXPECT_EQ(Part(window, "Label2(0)").accessibleName(), "输入电压, 230 V");
  EXPECT_EQ(window.menuBar()->actions()[0]->text(), "系统(&S)");
  EXPECT_EQ(Part<QAction>(window, "mnuLog").text(), "事件记录(&L)");
  EXPECT_EQ(TextOf(window, "lblApcCap(4)"), "机内温度");
  EXPECT_EQ(TextOf(window, "Frame1(0).Caption"), "UPS基本信息");
}

TEST_F(MainWindowTest, StatesTakeTheColoursOfThePanel) {
  status.bits = "1010";
  Start();
  Polls(2);
  const QImage strip = Part(window, "Frame2").grab().toImage();
  int left = 4;
  for (const char bit : status.bits) {
    const QImage place = strip.copy(std::exchange(left, left + 103), 0, 96, strip.height());
    EXPECT_EQ(CountOf({255, 0, 0}, place) > 0, bit == '1') << left;
    EXPECT_EQ(CountOf({0, 0, 255}, place) > 0, bit == '0') << left;
  }
}

}  // namespace
}  // namespace orvane::test
