// The main form's areas, menus and words.
#include "ui/main_window.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <string>

#include "app/captions.h"
#include "support/running_program.h"
#include "ui/pointer.h"

namespace orvane::test {
namespace {

struct MainWindowTest : testing::Test, RunningProgram {
  MainWindowTest() : RunningProgram(Language::kEnglish) { forms.open.insert(Form::frmMain); }

  std::string Spoken(const char* name) const {
    return Part(window, name).accessibleName().toStdString();
  }

  MainWindow window{state, panel, form};
};

TEST_F(MainWindowTest, AreasStandOneUnderAnotherInAFixedWindow) {
  Present(window);
  EXPECT_EQ(window.minimumSize(), window.maximumSize());
  EXPECT_FALSE(window.windowFlags().testFlag(Qt::WindowMaximizeButtonHint));
  for (const char* face : {"picAPC", "Image2"}) {
    int bottom = 0;
    for (const char* name : {"Frame2", face, "Frame1(0)", "Picture1", "Picture2"}) {
      const QRect area = Part(window, name).geometry();
      EXPECT_GE(area.top(), bottom) << name;
      bottom = area.bottom();
    }
    EXPECT_LE(bottom, window.centralWidget()->height());
  }
}

// Each menu with its entries in order, and what a click on it does to the windows or sends.
TEST_F(MainWindowTest, MenusStandInOrderAndAct) {
  const std::vector<std::string> expected = {
      "mnuSystem: mnuSetup Show frmSetup, -, mnuOnOrOffBeep Q\r, -, mnuExit Unload frmMain",
      "mnuTimer: mnuWeek Show frmWeek, mnuSpecial Show frmSpecial, -, "
      "mnuTestTimer Show frmSelfTest",
      "mnuDateAnalyse: mnuLog Show frmLog, mnuDateRecord Show frmDateRc, -, "
      "mnuShutRec Show frmShutRec",
      "mnuControl: mnuTest10S T\r, mnuTestToLow TL\r, mnuCancelTest CT\r, -, "
      "mnuShutDown Ask [Orvane] Are you sure to shutdown?",
      "mnuHelp: mnuAbout Show frmAbout"};
  Start();
  const auto click = [this](QAction& entry) -> std::string {
    if (entry.isSeparator()) return "-";
    EXPECT_TRUE(entry.text().contains('&')) << "no key for " << entry.text().toStdString();
    events.clear();
    MSComm1.sent.clear();
    entry.trigger();
    return entry.objectName().toStdString() + ' ' + MSComm1.Wire() +
           (events.empty() ? "" : events.back());
  };
  std::vector<std::string> menus;
  for (const QAction* top : window.menuBar()->actions()) {
    std::string menu = top->menu()->objectName().toStdString();
    const char* gap = ": ";
    for (QAction* entry : top->menu()->actions()) {
      if (!entry->isVisible()) continue;
      menu += std::exchange(gap, ", ") + click(*entry);
    }
    menus.push_back(menu);
  }
  EXPECT_EQ(menus, expected);
}

TEST_F(MainWindowTest, CanBeReadAndHeardInTheLanguageOfTheMoment) {
  Start();
  Polls(2);
  EXPECT_EQ(Spoken("Label2(0)"), "Input voltage, 230 V");
  EXPECT_EQ(Spoken("lblApcTemp"), "Temperature, 25 ℃");
  EXPECT_EQ(Spoken("lblApcFreq"), "Frequency, 50 Hz");
  EXPECT_EQ(Spoken("Label7(1)"), "UPS Model: Aurora 1000");
  EXPECT_EQ(Spoken("lblAc"), "AC: Normal");
  state.ResBase = kChineseBase;
  SetCaptions(state, panel);
  EXPECT_EQ(Spoken("Label2(0)"), "输入电压, 230 V");
  EXPECT_EQ(window.menuBar()->actions()[0]->text(), "系统(&S)");
  EXPECT_EQ(Part<QAction>(window, "mnuLog").text(), "事件记录(&L)");
  EXPECT_EQ(TextOf(window, "lblApcCap(4)"), "机内温度");
  EXPECT_EQ(TextOf(window, "Frame1(0).Caption"), "UPS基本信息");
  for (const char* face : {"picAPC", "Image2"}) {
    EXPECT_EQ(Part(window, face).toolTip(), "双击鼠标可以切换界面");
  }
}

TEST_F(MainWindowTest, StatesTakeTheColoursOfThePanel) {
  status.bits = "1010";
  Start();
  Polls(2);
  const QImage strip = Part(window, "Frame2").grab().toImage();
  for (const auto& [column, fault] : {std::pair{0, true}, {1, false}, {2, true}, {3, false}}) {
    const QImage place = strip.copy(column * 103 + 4, 0, 96, strip.height());
    EXPECT_EQ(CountOf({255, 0, 0}, place) > 0, fault) << column;
    EXPECT_EQ(CountOf({0, 0, 255}, place) > 0, !fault) << column;
  }
}

}  // namespace
}  // namespace orvane::test
