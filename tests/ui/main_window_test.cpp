// The main form's places, menus and words.
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
  // In the form's client area, in logical pixels.
  QRect Place(const char* name) const {
    const QWidget& control = Part(window, name);
    return {control.mapTo(window.centralWidget(), QPoint(0, 0)), control.size()};
  }

  MainWindow window{state, panel, form};
};

TEST_F(MainWindowTest, AreasStandAtTheirPlacesInAFixedWindow) {
  struct Row {
    const char* name;
    int left, top, width, height;  // twips
  };
  const Row rows[] = {
      {"Frame2", 0, 60, 7755, 660},           {"picAPC", 15, 780, 7725, 3645},
      {"Image2", 15, 825, 7725, 3600},        {"Frame1(0)", 0, 4485, 7755, 1185},
      {"Picture1", 0, 5760, 7740, 330},       {"Picture2", 0, 6135, 7740, 345},
      {"Picture3(0)", 1320, 1065, 4785, 300}, {"Picture3(5)", 1320, 3975, 4785, 300},
  };
  for (const Row& row : rows) {
    const QRect expected(row.left / 15, row.top / 15, row.width / 15, row.height / 15);
    EXPECT_EQ(Place(row.name), expected) << row.name;
  }
  EXPECT_EQ(window.centralWidget()->size(), QSize(518, 434));
  Present(window);
  EXPECT_EQ(window.minimumSize(), window.maximumSize());
  EXPECT_FALSE(window.windowFlags().testFlag(Qt::WindowMaximizeButtonHint));
}

TEST_F(MainWindowTest, MarksOfABarStandOverItsEndAtTheirValue) {
  struct Row {
    const char *name, *text;
    double end;  // of the bar at that value, twips
  };
  for (const Row& row : {Row{"lblMark(0)", "0", 15}, Row{"lblMark(8)", "55", 807},
                         Row{"lblMark(20)", "150", 4770}, Row{"lblMark(22)", "20", 966},
                         Row{"lblMark(32)", "75", 4770}, Row{"lblMark(35)", "50", 1917}}) {
    EXPECT_EQ(TextOf(window, row.name), row.text);
    const QRectF place(Part(window, row.name).geometry());
    EXPECT_NEAR(place.center().x(), (1305 + row.end) / 15, 0.75) << row.name;
  }
}

// 18 degrees apart, from right to top, outside the needle's reach.
TEST_F(MainWindowTest, MarksOfADialStandRoundItsPivot) {
  struct Row {
    const char* names[3];  // lowest, second, highest
    const char* texts[3];
    double pivot_x, pivot_y, reach;
  };
  const Row rows[] = {
      {{"Label12(3)", "Label12(2)", "Label10(0)"}, {"200", "210", "250"}, 615, 2325, 795},
      {{"Label12(7)", "Label12(6)", "Label10(1)"}, {"200", "210", "250"}, 3315, 2325, 780},
      {{"Label12(20)", "Label12(21)", "Label10(5)"}, {"0", "25", "125"}, 5910, 2340, 765},
      {{"Label12(15)", "Label12(14)", "Label10(3)"}, {"0", "20", "100"}, 5895, 3990, 810},
      {{"Label12(8)", "Label12(9)", "Label10(2)"}, {"30", "40", "80"}, 630, 4005, 720},
      {{"Label12(19)", "Label12(18)", "Label10(4)"}, {"0", "15", "75"}, 3330, 4005, 735},
  };
  constexpr double kDegrees[] = {0, 18, 90};
  for (const Row& row : rows) {
    for (int i = 0; i < 3; ++i) {
      EXPECT_EQ(TextOf(window, row.names[i]), row.texts[i]);
      const QLineF arm({row.pivot_x / 15, row.pivot_y / 15}, QRectF(Place(row.names[i])).center());
      EXPECT_NEAR(arm.angle(), kDegrees[i], 1) << row.names[i];
      EXPECT_GT(arm.length(), row.reach / 15) << row.names[i];
    }
  }
}

// Each menu and entry in order, with what a click on it does to the windows or sends down the line.
TEST_F(MainWindowTest, MenusStandInOrderAndAct) {
  const char* const expected[][2] = {{"mnuSystem", "menu"},
                                     {"mnuSetup", "Show frmSetup"},
                                     {"mnuLine11", "-"},
                                     {"mnuOnOrOffBeep", "Q\r"},
                                     {"mnuLine12", "-"},
                                     {"mnuExit", "Unload frmMain"},
                                     {"mnuTimer", "menu"},
                                     {"mnuWeek", "Show frmWeek"},
                                     {"mnuSpecial", "Show frmSpecial"},
                                     {"lineSpeceil", "-"},
                                     {"mnuTestTimer", "Show frmSelfTest"},
                                     {"mnuDateAnalyse", "menu"},
                                     {"mnuLog", "Show frmLog"},
                                     {"mnuDateRecord", "Show frmDateRc"},
                                     {"mnuLineA1", "-"},
                                     {"mnuShutRec", "Show frmShutRec"},
                                     {"mnuControl", "menu"},
                                     {"mnuTest10S", "T\r"},
                                     {"mnuTestToLow", "TL\r"},
                                     {"mnuCancelTest", "CT\r"},
                                     {"mnuLine21", "-"},
                                     {"mnuShutDown", "Ask [Orvane] Are you sure to shutdown?"},
                                     {"mnuHelp", "menu"},
                                     {"mnuInternet", "hidden"},
                                     {"mnuEmail", "hidden"},
                                     {"LineAbout", "hidden"},
                                     {"mnuAbout", "Show frmAbout"}};
  Start();
  dialogs.answer = false;
  const auto click = [this](QAction& entry) -> std::string {
    if (!entry.isVisible() && !entry.isEnabled()) return "hidden";
    if (entry.isSeparator()) return "-";
    EXPECT_TRUE(entry.text().contains('&')) << "no key for " << entry.text().toStdString();
    events.clear();
    MSComm1.sent.clear();
    entry.trigger();
    return MSComm1.Wire() + (events.empty() ? "" : events.back());
  };
  auto next = std::begin(expected);
  const auto expect = [&](const QObject& item, const std::string& does) {
    ASSERT_NE(next, std::end(expected));
    EXPECT_EQ(item.objectName(), (*next)[0]);
    EXPECT_EQ(does, (*next)[1]) << (*next)[0];
    ++next;
  };
  for (const QAction* top : window.menuBar()->actions()) {
    expect(*top->menu(), "menu");
    for (QAction* entry : top->menu()->actions()) expect(*entry, click(*entry));
  }
  EXPECT_EQ(next, std::end(expected));
}

TEST_F(MainWindowTest, CanBeReadAndHeardInTheLanguageOfTheMoment) {
  Start();
  Polls(2);
  EXPECT_EQ(Spoken("Label2(0)"), "Input voltage, 230 V");
  EXPECT_EQ(Spoken("lblApcTemp"), "Temperature, 25 ℃");
  EXPECT_EQ(Spoken("lblApcFreq"), "Frequency, 50 Hz");
  EXPECT_EQ(Spoken("Label7(1)"), "UPS Model: Aurora 1000");
  EXPECT_EQ(Spoken("lblAc"), "AC: Normal");
  status.input = "187.5";
  status.bits = "1000";
  Poll();
  EXPECT_EQ(Spoken("Label2(0)"), "Input voltage, 187.5 V");
  EXPECT_EQ(Spoken("lblAc"), "AC: Fail");
  state.ResBase = 1000;
  SetCaptions(state, panel);
  EXPECT_EQ(Spoken("Label2(0)"), "输入电压, 187.5 V");
  EXPECT_EQ(window.menuBar()->actions()[0]->text(), "系统(&S)");
  EXPECT_EQ(window.findChild<QAction*>("mnuLog")->text(), "事件记录(&L)");
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
  const auto has = [&](int column, QColor colour) {
    for (int x = column * 103 + 4; x < column * 103 + 100; ++x) {
      for (int y = 0; y < strip.height(); ++y) {
        if (strip.pixelColor(x, y) == colour) return true;
      }
    }
    return false;
  };
  for (const auto& [column, fault] : {std::pair{0, true}, {1, false}, {2, true}, {3, false}}) {
    EXPECT_EQ(has(column, QColor(255, 0, 0)), fault) << column;
    EXPECT_EQ(has(column, QColor(0, 0, 255)), !fault) << column;
  }
}

TEST_F(MainWindowTest, TwoWarningsShareTheLine) {
  const QWidget& first = Part(window, "lblAlert(1)");
  const QWidget& second = Part(window, "lblAlert(2)");
  Start();
  Polls(2);
  EXPECT_TRUE(first.isHidden());
  EXPECT_TRUE(second.isHidden());
  status.load = "120";
  Poll();
  EXPECT_EQ(second.height(), 22);
  status.bits = "1000";
  Polls(2);
  EXPECT_FALSE(first.isHidden());
  EXPECT_FALSE(first.geometry().intersects(second.geometry()));
  EXPECT_EQ(first.height() + second.height(), 22);
  status.load = "020";
  Poll();
  EXPECT_TRUE(second.isHidden());
  EXPECT_EQ(first.height(), 22);
}

}  // namespace
}  // namespace orvane::test
