// The two faces of the main form: what moves on them, what is painted, and how they change.
#include <gtest/gtest.h>

#include <QImage>
#include <QMap>
#include <QPaintEvent>

#include "app/gauges.h"
#include "support/running_program.h"
#include "ui/bar_face.h"
#include "ui/dial_face.h"
#include "ui/main_window.h"
#include "ui/pointer.h"

namespace orvane::test {
namespace {

// Collects what is painted, by the names of the widgets.
class PaintWatch : public QObject {
 public:
  explicit PaintWatch(QWidget& window) {
    window.installEventFilter(this);
    for (QWidget* widget : window.findChildren<QWidget*>()) widget->installEventFilter(this);
    Take();
  }

  // What has been painted since the last call.
  QMap<QString, QRegion> Take() {
    QApplication::processEvents();
    return std::exchange(painted_, {});
  }

 protected:
  bool eventFilter(QObject* widget, QEvent* event) override {
    if (event->type() == QEvent::Paint) {
      painted_[widget->objectName()] += static_cast<QPaintEvent*>(event)->region();
    }
    return false;
  }

 private:
  QMap<QString, QRegion> painted_;
};

struct FacesTest : testing::Test, RunningProgram {
  FacesTest() : RunningProgram(Language::kEnglish) {
    Start();
    Present(window);
  }

  Trough& Row(int i) const { return Part<Trough>(window, QString("Picture3(%1)").arg(i)); }
  double Width(int i) const { return Row(i).BarRect().width() * 15; }

  MainWindow window{state, panel, form};
  QWidget& board = Part(window, "picAPC");
  DialFace& dials = Part<DialFace>(window, "Image2");
};

TEST_F(FacesTest, BarsHaveTheWidthOfTheirValues) {
  struct Case {
    const char *input, *output, *load, *battery, *temperature, *frequency;
    double widths[6];  // from the top row to the bottom one, in twips
  };
  // The rest; the middle; full scale; beyond it, where the trough cuts.
  const Case cases[] = {
      {"000.0", "150.0", "000", "1.60", "00.0", "39.9", {15, 2175, 15, 15, 15, 15}},
      {"230.0",
       "220.5",
       "035",
       "2.00",
       "25.0",
       "50.0",
       {3327, 3190.2, 1124.5, 2440.05, 1600, 1917}},
      {"330.0", "330.0", "150", "2.30", "75.0", "65.0", {4767, 4767, 4770, 4770, 4770, 4770}},
      {"999.9", "400.0", "160", "2.30", "99.0", "80.0", {4785, 4785, 4785, 4770, 4785, 4785}},
  };
  for (int i = 0; i < 6; ++i) EXPECT_NEAR(Width(i), 15, 0.001) << "before the first reply";
  for (const Case& row : cases) {
    status.input = row.input;
    status.output = row.output;
    status.load = row.load;
    status.battery = row.battery;
    status.temperature = row.temperature;
    status.frequency = row.frequency;
    Poll();
    for (int i = 0; i < 6; ++i) EXPECT_NEAR(Width(i), row.widths[i], 0.01) << "row " << i;
  }
}

TEST_F(FacesTest, BarsArePaintedAsWideAsTheyAre) {
  constexpr QColor kGreen{0, 128, 0};
  for (const char* load : {"000", "035", "100", "160", "050"}) {
    status.load = load;
    Poll();
    QApplication::processEvents();
    const QImage picture = Row(2).grab().toImage();
    int green = 0;
    for (int x = 0; x < picture.width(); ++x) {
      if (picture.pixelColor(x, 8) != kGreen) continue;
      EXPECT_EQ(x, green) << "a gap in the bar";
      ++green;
    }
    EXPECT_NEAR(green, Row(2).BarRect().width(), 0.51) << load;
    for (const int y : {4, 12}) EXPECT_NE(picture.pixelColor(0, y), kGreen);
    for (const int y : {5, 11}) EXPECT_EQ(picture.pixelColor(0, y), kGreen);
  }
}

// A needle that has moved leaves nothing behind.
TEST_F(FacesTest, NeedlesArePaintedWhereTheyStand) {
  struct Case {
    std::int16_t load;
    double x, y;  // of the tip, in twips of the form
  };
  form.picAPC_DblClick();
  for (const Case& row : {Case{0, 6675, 2340}, Case{125, 5910, 1575}, Case{100, 6146.40, 1612.44},
                          Case{17, 6657.61, 2177.81}}) {
    SetGauge(state.Main, panel, kLoad, row.load);
    QApplication::processEvents();
    const QLineF line = dials.NeedleLine(kLoad);
    EXPECT_NEAR(line.x2() * 15 + 15, row.x, 0.02) << row.load;
    EXPECT_NEAR(line.y2() * 15 + 825, row.y, 0.02) << row.load;
    const QImage picture = dials.grab().toImage();
    int blue = 0;
    for (double t = 0.2; t < 0.98; t += 0.05) {
      const QPoint at = line.pointAt(t).toPoint();
      for (const QPoint off : {QPoint(0, 0), QPoint(-1, 0), QPoint(0, -1), QPoint(-1, -1)}) {
        const QColor colour = picture.pixelColor(at + off);
        if (colour.blue() <= 200 || colour.red() >= 120) continue;
        ++blue;
        break;
      }
    }
    EXPECT_GE(blue, 14) << row.load;
    EXPECT_GT(picture.pixelColor(line.pointAt(1.06).toPoint()).red(), 150) << row.load;
  }
}

TEST_F(FacesTest, NothingIsRepaintedButWhatChanged) {
  Polls(3);
  PaintWatch watch(window);
  panel.Label13.Caption(std::string(panel.Label13.Caption()));
  panel.lblAc.ForeColor(panel.lblAc.ForeColor());
  panel.shpLoad.Width(panel.shpLoad.Width());
  panel.lblAlert[1].Visible(false);
  tmrDate.Tick();
  EXPECT_EQ(watch.Take().keys(), QStringList());
  time.SetWall({2026, 3, 14, 15, 20, 0});
  tmrDate.Tick();
  EXPECT_EQ(watch.Take().keys(), QStringList("Label15"));
  Poll();  // the same reply
  EXPECT_EQ(watch.Take().keys(), QStringList("Label15"));

  panel.Label2[kLoad].Caption("36");
  const auto bars = watch.Take();
  EXPECT_EQ(bars.keys(), (QStringList{"Picture3(2)", "lblApcLoad"}));
  EXPECT_LE(bars["Picture3(2)"].boundingRect().width(), 8) << "more than what the bar grew by";

  form.picAPC_DblClick();
  watch.Take();
  SetGauge(state.Main, panel, kLoad, 36);
  panel.Label2[kLoad].Caption("37");
  const auto needles = watch.Take();
  EXPECT_EQ(needles.keys(), (QStringList{"Image2", "Label2(2)"}));
  EXPECT_LE(needles["Image2"].boundingRect().width(), 60) << "more than the needle's field";
}

TEST_F(FacesTest, DoubleClickOnTheSurfaceAloneChangesTheFace) {
  const auto try_controls = [](QWidget& face) {
    for (QWidget* control : face.findChildren<QWidget*>()) {
      DoubleClick(*control, Middle(*control));
      ASSERT_TRUE(face.isVisible()) << control->objectName().toStdString();
    }
  };
  try_controls(board);
  EXPECT_FALSE(dials.isVisible());
  DoubleClick(board, {10, 5});
  EXPECT_TRUE(dials.isVisible());
  EXPECT_FALSE(board.isVisible());
  try_controls(dials);
  DoubleClick(dials, {2, 2}, {.button = Qt::RightButton});
  EXPECT_FALSE(board.isVisible());
  DoubleClick(dials, {2, 2});
  EXPECT_TRUE(board.isVisible());
}

// Frequency and temperature go crosswise.
TEST_F(FacesTest, BothFacesFollowTheValuesWhicheverIsUp) {
  form.picAPC_DblClick();
  status.load = "080";
  status.frequency = "49.9";
  status.temperature = "27.5";
  Poll();
  EXPECT_EQ(TextOf(window, "lblApcLoad"), "80");
  EXPECT_EQ(TextOf(window, "lblApcFreq") + ' ' + TextOf(window, "Label2(4)"), "49.9 49.9");
  EXPECT_EQ(TextOf(window, "lblApcTemp") + ' ' + TextOf(window, "Label2(5)"), "27.5 27.5");
  EXPECT_LT(Part(window, "lblApcTemp").y(), Part(window, "lblApcFreq").y());
  EXPECT_NEAR(Width(2), 80 * 31.7 + 15, 0.01);
  form.Image2_DblClick();
  status.load = "020";
  Poll();
  EXPECT_EQ(TextOf(window, "Label2(2)"), "20");
  EXPECT_NEAR(dials.NeedleLine(kLoad).angle(), 14.4, 0.1);
}

}  // namespace
}  // namespace orvane::test
