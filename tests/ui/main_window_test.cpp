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
#include "ui/text_label.h"

namespace orvane::test {
namespace {

using Language = RunningProgram::Language;

struct MainWindowTest : testing::Test, RunningProgram {
  MainWindowTest() : RunningProgram(Language::kEnglish) { forms.open.insert(Form::frmMain); }

  QWidget* Find(const QString& name) const { return window.findChild<QWidget*>(name); }
  const TextLabel* Labelled(const char* name) const { return window.findChild<TextLabel*>(name); }
  std::string Spoken(const char* name) const {
    return Labelled(name)->accessibleName().toStdString();
  }
  // In the form's client area, in logical pixels.
  QRect Place(const QWidget& control) const {
    return {control.mapTo(window.centralWidget(), QPoint(0, 0)), control.size()};
  }

  MainWindow window{state, panel, form};
};

TEST_F(MainWindowTest, AreasStandAtTheirPlaces) {
  struct Row {
    const char* name;
    int left, top, width, height;  // twips
  };
  const Row rows[] = {
      {"Frame2", 0, 60, 7755, 660},           {"picAPC", 15, 780, 7725, 3645},
      {"Image2", 15, 825, 7725, 3600},        {"Frame1(0)", 0, 4485, 7755, 1185},
      {"Picture1", 0, 5760, 7740, 330},       {"Picture2", 0, 6135, 7740, 345},
      {"Picture3(0)", 1320, 1065, 4785, 300}, {"Picture3(1)", 1320, 1650, 4785, 300},
      {"Picture3(2)", 1320, 2235, 4785, 300}, {"Picture3(3)", 1320, 2805, 4785, 300},
      {"Picture3(4)", 1320, 3390, 4785, 300}, {"Picture3(5)", 1320, 3975, 4785, 300},
  };
  EXPECT_EQ(window.centralWidget()->size(), QSize(518, 434));
  for (const Row& row : rows) {
    const QWidget* area = Find(row.name);
    ASSERT_NE(area, nullptr) << row.name;
    const QRect expected(row.left / 15, row.top / 15, row.width / 15, row.height / 15);
    EXPECT_EQ(Place(*area), expected) << row.name;
  }
  for (int i = 0; i < 6; ++i) {
    EXPECT_EQ(Find(QString("Label2(%1)").arg(i))->size(), QSize(43, 20));
  }
}

TEST_F(MainWindowTest, HasAFixedSizeAndNoMaximising) {
  window.show();
  QApplication::processEvents();
  EXPECT_EQ(window.windowTitle(), "Orvane");
  EXPECT_EQ(window.minimumSize(), window.maximumSize());
  EXPECT_TRUE(window.windowFlags().testFlag(Qt::WindowMinimizeButtonHint));
  EXPECT_FALSE(window.windowFlags().testFlag(Qt::WindowMaximizeButtonHint));
}

TEST_F(MainWindowTest, MarksStandAtTheirValues) {
  struct Row {
    const char* name;
    const char* text;
    double end;  // of the bar at that value, twips
  };
  const Row rows[] = {
      {"lblMark(0)", "0", 15},     {"lblMark(4)", "220", 3183},  {"lblMark(6)", "330", 4767},
      {"lblMark(8)", "55", 807},   {"lblMark(18)", "100", 3185}, {"lblMark(20)", "150", 4770},
      {"lblMark(22)", "20", 966},  {"lblMark(26)", "100", 4770}, {"lblMark(27)", "0", 15},
      {"lblMark(32)", "75", 4770}, {"lblMark(33)", "40", 15},    {"lblMark(35)", "50", 1917},
      {"lblMark(38)", "65", 4770},
  };
  for (const Row& row : rows) {
    const TextLabel* mark = Labelled(row.name);
    ASSERT_NE(mark, nullptr) << row.name;
    EXPECT_EQ(mark->text(), row.text);
    EXPECT_NEAR(QRectF(mark->geometry()).center().x(), (1305 + row.end) / 15, 0.75) << row.name;
  }
  EXPECT_EQ(Find("lblMark(39)"), nullptr);
}

// 18 degrees apart, from right to top, outside the needle's reach.
TEST_F(MainWindowTest, MarksOfADialStandRoundItsPivot) {
  struct Row {
    const char* lowest;
    const char* second;
    const char* highest;
    const char* texts[3];
    double pivot_x, pivot_y, reach;
  };
  const Row rows[] = {
      {"Label12(3)", "Label12(2)", "Label10(0)", {"200", "210", "250"}, 615, 2325, 795},
      {"Label12(7)", "Label12(6)", "Label10(1)", {"200", "210", "250"}, 3315, 2325, 780},
      {"Label12(20)", "Label12(21)", "Label10(5)", {"0", "25", "125"}, 5910, 2340, 765},
      {"Label12(15)", "Label12(14)", "Label10(3)", {"0", "20", "100"}, 5895, 3990, 810},
      {"Label12(8)", "Label12(9)", "Label10(2)", {"30", "40", "80"}, 630, 4005, 720},
      {"Label12(19)", "Label12(18)", "Label10(4)", {"0", "15", "75"}, 3330, 4005, 735},
  };
  for (const Row& row : rows) {
    const char* const names[] = {row.lowest, row.second, row.highest};
    const double degrees[] = {0, 18, 90};
    for (int i = 0; i < 3; ++i) {
      const TextLabel* mark = Labelled(names[i]);
      ASSERT_NE(mark, nullptr) << names[i];
      EXPECT_EQ(mark->text(), row.texts[i]);
      const QPointF pivot(row.pivot_x / 15, row.pivot_y / 15);
      const QLineF arm(pivot, QRectF(Place(*mark)).center());
      EXPECT_NEAR(arm.angle(), degrees[i], 1) << names[i];
      EXPECT_GT(arm.length(), row.reach / 15) << names[i];
    }
  }
}

TEST_F(MainWindowTest, MenusStandInOrder) {
  const std::vector<std::vector<const char*>> expected = {
      {"mnuSystem", "mnuSetup", "mnuLine11", "mnuOnOrOffBeep", "mnuLine12", "mnuExit"},
      {"mnuTimer", "mnuWeek", "mnuSpecial", "lineSpeceil", "mnuTestTimer"},
      {"mnuDateAnalyse", "mnuLog", "mnuDateRecord", "mnuLineA1", "mnuShutRec"},
      {"mnuControl", "mnuTest10S", "mnuTestToLow", "mnuCancelTest", "mnuLine21", "mnuShutDown"},
      {"mnuHelp", "mnuInternet", "mnuEmail", "LineAbout", "mnuAbout"},
  };
  std::vector<std::vector<const char*>> found;
  std::vector<std::string> names;
  for (const QAction* top : window.menuBar()->actions()) {
    names.push_back(top->menu()->objectName().toStdString());
    for (const QAction* entry : top->menu()->actions()) {
      names.push_back(entry->objectName().toStdString());
      EXPECT_EQ(entry->isSeparator(), names.back().starts_with("mnuLine") ||
                                          names.back().starts_with("line") ||
                                          names.back().starts_with("Line"));
    }
  }
  std::vector<std::string> flat;
  for (const auto& menu : expected) flat.insert(flat.end(), menu.begin(), menu.end());
  EXPECT_EQ(names, flat);
  for (const char* hidden : {"mnuInternet", "mnuEmail", "LineAbout"}) {
    const auto* entry = window.findChild<QAction*>(hidden);
    EXPECT_FALSE(entry->isVisible()) << hidden;
    EXPECT_FALSE(entry->isEnabled()) << hidden;
  }
}

TEST_F(MainWindowTest, MenusActAndCanBeReachedByKeys) {
  struct Row {
    const char* entry;
    const char* event;  // what happens to the windows, or
    const char* order;  // what goes down the line
  };
  const Row rows[] = {
      {"mnuSetup", "Show frmSetup", ""},
      {"mnuOnOrOffBeep", "", "Q\r"},
      {"mnuWeek", "Show frmWeek", ""},
      {"mnuSpecial", "Show frmSpecial", ""},
      {"mnuTestTimer", "Show frmSelfTest", ""},
      {"mnuLog", "Show frmLog", ""},
      {"mnuDateRecord", "Show frmDateRc", ""},
      {"mnuShutRec", "Show frmShutRec", ""},
      {"mnuTest10S", "", "T\r"},
      {"mnuTestToLow", "", "TL\r"},
      {"mnuCancelTest", "", "CT\r"},
      {"mnuAbout", "Show frmAbout", ""},
      {"mnuExit", "Unload frmMain", ""},
  };
  Start();
  for (const Row& row : rows) {
    events.clear();
    MSComm1.sent.clear();
    auto* entry = window.findChild<QAction*>(row.entry);
    EXPECT_TRUE(entry->text().contains('&')) << row.entry;
    entry->trigger();
    EXPECT_EQ(events, *row.event ? Events{row.event} : Events{}) << row.entry;
    EXPECT_EQ(MSComm1.Wire(), row.order) << row.entry;
  }
  dialogs.answer = false;
  window.findChild<QAction*>("mnuShutDown")->trigger();
  EXPECT_EQ(events.back(), "Ask [Orvane] Are you sure to shutdown?");
}

TEST_F(MainWindowTest, WordsFollowTheLanguage) {
  Start();
  EXPECT_EQ(window.menuBar()->actions()[0]->text(), "&System");
  EXPECT_EQ(Labelled("lblApcCap(4)")->text(), "Temp.");
  EXPECT_EQ(Find("picAPC")->toolTip(), "Dbl_Click To Switch Interface");
  state.ResBase = 1000;
  SetCaptions(state, panel);
  EXPECT_EQ(window.menuBar()->actions()[0]->text(), "系统(&S)");
  EXPECT_EQ(window.findChild<QAction*>("mnuLog")->text(), "事件记录(&L)");
  EXPECT_EQ(Labelled("lblApcCap(4)")->text(), "机内温度");
  EXPECT_EQ(Labelled("Frame1(0).Caption")->text(), "UPS基本信息");
  EXPECT_EQ(Find("picAPC")->toolTip(), "双击鼠标可以切换界面");
  EXPECT_EQ(Find("Image2")->toolTip(), "双击鼠标可以切换界面");
  EXPECT_EQ(Spoken("Label2(0)"), "输入电压, 0 V");
}

TEST_F(MainWindowTest, ReadOutsAndStatesCanBeHeard) {
  Start();
  Polls(2);
  EXPECT_EQ(Spoken("Label2(0)"), "Input voltage, 230 V");
  EXPECT_EQ(Spoken("lblApcTemp"), "Temperature, 25 ℃");
  EXPECT_EQ(Spoken("lblApcFreq"), "Frequency, 50 Hz");
  EXPECT_EQ(Spoken("lblAc"), "AC: Normal");
  EXPECT_EQ(Spoken("Label7(1)"), "UPS Model: Aurora 1000");
  status.input = "187.5";
  status.bits = "1000";
  Poll();
  EXPECT_EQ(Spoken("Label2(0)"), "Input voltage, 187.5 V");
  EXPECT_EQ(Spoken("lblAc"), "AC: Fail");
}

TEST_F(MainWindowTest, StatesTakeTheColoursOfThePanel) {
  status.bits = "1010";
  Start();
  Polls(2);
  const QImage strip = Find("Frame2")->grab().toImage();
  const auto count = [&](int column, QColor colour) {
    int pixels = 0;
    for (int x = column * 103 + 4; x < column * 103 + 100; ++x) {
      for (int y = 0; y < strip.height(); ++y) pixels += strip.pixelColor(x, y) == colour;
    }
    return pixels;
  };
  for (const auto& [column, fault] : {std::pair{0, true}, {1, false}, {2, true}, {3, false}}) {
    EXPECT_EQ(count(column, QColor(255, 0, 0)) > 0, fault) << column;
    EXPECT_EQ(count(column, QColor(0, 0, 255)) > 0, !fault) << column;
  }
}

// A modem may answer anything.
TEST_F(MainWindowTest, StatusLineBearsWhateverItIsGiven) {
  const std::string hostile[] = {
      std::string(1 << 20, 'A'), "one\r\ntwo\nthree",          std::string("nul\0nul", 7),
      "<img src=x><b>bold</b>",  std::string(1 << 20, '\xff'), std::string(4096, '\n'),
  };
  const TextLabel* label = Labelled("Label13");
  for (const std::string& text : hostile) {
    panel.Label13.Caption(text);
    EXPECT_LE(label->text().size(), 601);
    EXPECT_LE(label->Advance(), label->width());
    EXPECT_FALSE(label->Shown().contains('\n'));
    EXPECT_FALSE(label->toolTip().contains("<img"));
    EXPECT_FALSE(window.grab().isNull());
  }
  EXPECT_EQ(panel.Label13.Caption(), hostile[5]);
}

TEST_F(MainWindowTest, TwoWarningsShareTheLine) {
  Start();
  TextLabel* const first = window.findChild<TextLabel*>("lblAlert(1)");
  TextLabel* const second = window.findChild<TextLabel*>("lblAlert(2)");
  Polls(2);
  EXPECT_TRUE(first->isHidden());
  EXPECT_TRUE(second->isHidden());
  status.load = "120";
  Poll();
  EXPECT_EQ(second->height(), 22);
  status.bits = "1000";
  Polls(2);
  EXPECT_FALSE(first->isHidden());
  EXPECT_FALSE(first->geometry().intersects(second->geometry()));
  EXPECT_EQ(first->height() + second->height(), 22);
  status.load = "020";
  Poll();
  EXPECT_TRUE(second->isHidden());
  EXPECT_EQ(first->height(), 22);
}

TEST_F(MainWindowTest, ALaterWindowTakesOverThePanel) {
  auto first = std::make_unique<MainWindow>(state, panel, form);
  MainWindow second(state, panel, form);
  first.reset();
  panel.Label13.Caption("seen");
  EXPECT_EQ(second.findChild<TextLabel*>("Label13")->text(), "seen");
}

}  // namespace
}  // namespace orvane::test
