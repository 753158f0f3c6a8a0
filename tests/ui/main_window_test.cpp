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
#include <utility>

#include "app/captions.h"
#include "app/gauges.h"
#include "support/running_program.h"
#include "ui/bar_face.h"
#include "ui/dial_face.h"
#include "ui/gauge_look.h"
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

  Trough& Row(Gauge gauge) const { return Part<Trough>(window, Id(gauge) + "_bar"); }
  double Width(Gauge gauge) const { return Row(gauge).BarRect().width() * 15; }

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

TEST_F(MainWindowTest, StatesTakeTheColoursOfThePanel) {
  status.bits = "1010";
  Poll();
  const QImage strip = Part(window, "states").grab().toImage();
  int left = 4;
  for (const char bit : status.bits) {
    const QImage place = strip.copy(std::exchange(left, left + 103), 0, 96, strip.height());
    EXPECT_EQ(CountOf({255, 0, 0}, place) > 0, bit == '1') << left;
    EXPECT_EQ(CountOf({0, 0, 255}, place) > 0, bit == '0') << left;
  }
}

// The last value is beyond the scale, where the trough cuts.
TEST_F(MainWindowTest, BarsEndUnderTheMarksOfTheirValues) {
  for (const Gauge gauge : kGauges) EXPECT_NEAR(Width(gauge), 15, 0.001);
  status = {"165.0", "275.0", "025", "50.0", "2.27", "60.0"};
  Poll();
  const PerGauge<int> values = {{165, 275, 25, 100, 50, 60}};
  for (const Gauge gauge : kGauges) {
    const QString name = QString("%1_bar_mark_%2").arg(Id(gauge)).arg(values[gauge]);
    const QRectF mark(Part(window, name).geometry());
    EXPECT_NEAR(mark.center().x(), Row(gauge).x() + Row(gauge).BarRect().right(), 0.75)
        << name.toStdString();
  }
  EXPECT_NEAR(Width(Gauge::kLoad), 25 * 31.7 + 15, 0.01);
  panel.read_outs[Gauge::kLoad].Caption("26");
  EXPECT_NEAR(Width(Gauge::kLoad), 26 * 31.7 + 15, 0.01);
  status.load = "160";
  Poll();
  const double whole = Width(Gauge::kLoad);
  EXPECT_NEAR(whole, 4785, 0.01);
  const QImage trough = Row(Gauge::kLoad).grab().toImage();
  EXPECT_NEAR(CountOf({0, 128, 0}, trough.copy(0, 8, trough.width(), 1)), whole / 15, 0.51);
}

TEST_F(MainWindowTest, NeedlesPointAtTheMarksOfTheirValues) {
  const PerGauge<std::int16_t> values = {{250, 250, 125, 100, 80, 75}};
  for (const Gauge gauge : kGauges) {
    const QString name = QString("%1_dial_mark_%2").arg(Id(gauge)).arg(values[gauge]);
    SetGauge(state.Main, panel, gauge, values[gauge]);
    const QLineF needle = dials.NeedleLine(gauge);
    const QLineF arm(needle.p1(), QRectF(Part(window, name).geometry()).center());
    EXPECT_NEAR(std::remainder(arm.angle() - needle.angle(), 360), 0, 1) << name.toStdString();
    EXPECT_GT(arm.length(), needle.length()) << name.toStdString();
  }
  SetGauge(state.Main, panel, Gauge::kLoad, 100);
  const QImage picture = dials.grab().toImage();
  const QLineF needle = dials.NeedleLine(Gauge::kLoad);
  const QColor inside = picture.pixelColor(needle.pointAt(0.6).toPoint());
  EXPECT_TRUE(inside.blue() > 200 && inside.red() < 120) << inside.name().toStdString();
  EXPECT_GT(picture.pixelColor(needle.pointAt(1.06).toPoint()).red(), 150);
}

// Only what changed is painted, and what has moved leaves nothing behind.
TEST_F(MainWindowTest, ScreenShowsWhatAWholeRepaintWould) {
  // A line that is painted in part may be smoothed a little otherwise.
  const auto alike = [](QRgb a, QRgb b) {
    return std::abs(qRed(a) - qRed(b)) < 8 && std::abs(qBlue(a) - qBlue(b)) < 8;
  };
  for (const std::string load : {"160", "035", "000", "125", "017"}) {
    status.load = load;
    for (const char* bits : {"1010", "0000"}) {
      status.bits = bits;
      Poll();
      QApplication::processEvents();
      const QImage screen = window.screen()->grabWindow(window.winId()).toImage();
      const QImage whole = window.grab().toImage();
      ASSERT_EQ(screen.size(), whole.size());
      int unlike = 0;
      for (int x = 0; x < whole.width(); ++x) {
        for (int y = 0; y < whole.height(); ++y) {
          unlike += !alike(screen.pixel(x, y), whole.pixel(x, y));
        }
      }
      EXPECT_EQ(unlike, 0) << load << ' ' << bits;
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
