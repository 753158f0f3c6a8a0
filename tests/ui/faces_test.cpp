// The two faces of the main form: what moves on them, what is painted, and how they change.
#include <gtest/gtest.h>

#include <QImage>
#include <QLabel>
#include <QMap>
#include <QPaintEvent>
#include <algorithm>

#include "app/gauges.h"
#include "support/running_program.h"
#include "ui/bar_face.h"
#include "ui/dial_face.h"
#include "ui/main_window.h"
#include "ui/pointer.h"

namespace orvane::test {
namespace {

constexpr QColor kGreen{0, 128, 0};

// Counts what is painted, by the names of the widgets.
class PaintWatch : public QObject {
 public:
  explicit PaintWatch(QWidget& window) : window_(window) {
    window.installEventFilter(this);
    for (QWidget* widget : window.findChildren<QWidget*>()) widget->installEventFilter(this);
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
  QWidget& window_;
  QMap<QString, QRegion> painted_;
};

struct FacesTest : testing::Test, RunningProgram {
  FacesTest() : RunningProgram(Language::kEnglish) {
    Start();
    window.show();
    QApplication::processEvents();
  }

  QWidget& Find(const QString& name) const { return *window.findChild<QWidget*>(name); }
  const Trough& Row(int i) const {
    return *window.findChild<Trough*>(QString("Picture3(%1)").arg(i));
  }
  DialFace& Dials() const { return *window.findChild<DialFace*>("Image2"); }
  bool BarsUp() const { return Find("picAPC").isVisible() && !Find("Image2").isVisible(); }

  MainWindow window{state, panel, form};
};

TEST_F(FacesTest, BarsHaveTheWidthOfTheirValues) {
  struct Case {
    StatusFrame status;
    double widths[6];  // from the top row to the bottom one, in twips
  };
  // Rest; the middle; full scale; beyond it, where the trough cuts.
  const Case cases[] = {
      {{.input = "000.0",
        .output = "150.0",
        .load = "000",
        .frequency = "39.9",
        .battery = "1.60",
        .temperature = "00.0"},
       {15, 2175, 15, 15, 15, 15}},
      {{.input = "230.0",
        .output = "220.5",
        .load = "035",
        .frequency = "50.0",
        .battery = "2.00",
        .temperature = "25.0"},
       {3327, 3190.2, 1124.5, 2440.05, 1600, 1917}},
      {{.input = "330.0",
        .output = "330.0",
        .load = "150",
        .frequency = "65.0",
        .battery = "2.30",
        .temperature = "75.0"},
       {4767, 4767, 4770, 4770, 4770, 4770}},
      {{.input = "999.9",
        .output = "400.0",
        .load = "160",
        .frequency = "80.0",
        .battery = "2.30",
        .temperature = "99.0"},
       {4785, 4785, 4785, 4770, 4785, 4785}},
  };
  for (const Case& row : cases) {
    status = row.status;
    Poll();
    for (int i = 0; i < 6; ++i) {
      const QRectF bar = Row(i).BarRect();
      EXPECT_NEAR(bar.width() * 15, row.widths[i], 0.01) << "row " << i;
      EXPECT_EQ(bar.topLeft(), QPointF(0, 5));
      EXPECT_EQ(bar.height(), 7);
    }
  }
}

TEST_F(FacesTest, BarsArePaintedAsWideAsTheyAre) {
  for (const char* load : {"000", "035", "100", "160", "050"}) {
    status.load = load;
    Poll();
    QApplication::processEvents();
    Trough& trough = const_cast<Trough&>(Row(2));
    const QImage picture = trough.grab().toImage();
    int green = 0;
    for (int x = 0; x < picture.width(); ++x) {
      if (picture.pixelColor(x, 8) != kGreen) continue;
      EXPECT_EQ(x, green) << "a gap in the bar";
      ++green;
    }
    EXPECT_NEAR(green, trough.BarRect().width(), 0.51) << load;
    for (const int y : {4, 12}) EXPECT_NE(picture.pixelColor(0, y), kGreen);
  }
}

TEST_F(FacesTest, FiguresGoCrosswiseForFrequencyAndTemperature) {
  status.frequency = "49.9";
  status.temperature = "27.5";
  Poll();
  const auto text = [this](const char* name) {
    return window.findChild<QLabel*>(name)->text().toStdString();
  };
  EXPECT_EQ(text("Label2(4)"), "49.9");
  EXPECT_EQ(text("Label2(5)"), "27.5");
  EXPECT_EQ(text("lblApcTemp"), "27.5");
  EXPECT_EQ(text("lblApcFreq"), "49.9");
  // On the board temperature stands above frequency.
  EXPECT_LT(Find("lblApcTemp").y(), Find("lblApcFreq").y());
  EXPECT_NEAR(Row(4).BarRect().width() * 15, 27.5 * 63.4 + 15, 0.01);
  EXPECT_NEAR(Row(5).BarRect().width() * 15, 9.9 * 190.2 + 15, 0.5);
}

TEST_F(FacesTest, NeedlesEndWhereTheScalePutsThem) {
  struct Case {
    int gauge;
    std::int16_t value;
    double x1, y1, x2, y2;  // twips of the form
  };
  const Case cases[] = {
      {0, 200, 615, 2325, 1410, 2325},        {0, 250, 615, 2325, 615, 1530},
      {1, 220, 3315, 2325, 3946.03, 1866.53}, {2, 100, 5910, 2340, 6146.40, 1612.44},
      {3, 50, 5895, 3990, 6467.76, 3417.24},  {4, 50, 630, 4005, 1212.49, 3581.79},
      {5, 75, 3330, 4005, 3330, 3270},
  };
  for (const Case& row : cases) {
    SetGauge(state.Main, panel, row.gauge, row.value);
    const QLineF line = Dials().NeedleLine(static_cast<std::size_t>(row.gauge));
    const QPointF picture(15, 825);
    EXPECT_NEAR(line.x1() * 15 + picture.x(), row.x1, 0.01) << row.gauge;
    EXPECT_NEAR(line.y1() * 15 + picture.y(), row.y1, 0.01) << row.gauge;
    EXPECT_NEAR(line.x2() * 15 + picture.x(), row.x2, 0.02) << row.gauge;
    EXPECT_NEAR(line.y2() * 15 + picture.y(), row.y2, 0.02) << row.gauge;
  }
}

// A needle that has moved leaves nothing behind: what was repainted in parts looks like what is
// painted anew.
TEST_F(FacesTest, NeedlesArePaintedWhereTheyStand) {
  form.picAPC_DblClick();
  constexpr std::int16_t kLoads[] = {0, 125, 60, 17};
  for (const std::int16_t value : kLoads) {
    SetGauge(state.Main, panel, kLoad, value);
    QApplication::processEvents();
    const QLineF line = Dials().NeedleLine(kLoad);
    const QImage picture = Dials().grab().toImage();
    int blue = 0;
    for (double t = 0.2; t < 0.98; t += 0.05) {
      const QPoint at = line.pointAt(t).toPoint();
      for (const QPoint off : {QPoint(0, 0), QPoint(-1, 0), QPoint(0, -1), QPoint(-1, -1)}) {
        const QColor colour = picture.pixelColor(at + off);
        if (colour.blue() > 200 && colour.red() < 120) {
          ++blue;
          break;
        }
      }
    }
    EXPECT_GE(blue, 14) << value;
    const QColor beyond = picture.pixelColor(line.pointAt(1.06).toPoint());
    EXPECT_GT(beyond.red(), 150) << value;
  }
}

TEST_F(FacesTest, SameTextRepaintsNothing) {
  Polls(3);
  PaintWatch watch(window);
  panel.Label13.Caption("something else");
  EXPECT_FALSE(watch.Take().isEmpty());
  panel.Label13.Caption("something else");
  panel.lblAc.Caption(panel.lblAc.Caption());
  panel.lblAc.ForeColor(panel.lblAc.ForeColor());
  panel.shpLoad.Width(panel.shpLoad.Width());
  panel.lblAlert[1].Visible(false);
  panel.mnuLog.Text(panel.mnuLog.Text());
  EXPECT_EQ(watch.Take().keys(), QStringList());
}

TEST_F(FacesTest, ClockRepaintsItsOwnLabelAlone) {
  Polls(3);
  PaintWatch watch(window);
  watch.Take();
  tmrDate.Tick();
  EXPECT_EQ(watch.Take().keys(), QStringList());
  time.SetWall({2026, 3, 14, 15, 20, 0});
  tmrDate.Tick();
  EXPECT_EQ(watch.Take().keys(), QStringList("Label15"));
}

TEST_F(FacesTest, UnchangedReplyRepaintsTheClockAtMost) {
  Polls(3);
  PaintWatch watch(window);
  watch.Take();
  Poll();
  EXPECT_EQ(watch.Take().keys(), QStringList("Label15"));
}

TEST_F(FacesTest, ChangedValueRepaintsItsOwnRow) {
  Polls(3);
  PaintWatch watch(window);
  watch.Take();
  panel.Label2[kLoad].Caption("36");
  const auto painted = watch.Take();
  EXPECT_EQ(painted.keys(), (QStringList{"Picture3(2)", "lblApcLoad"}));
  // And of the trough only the part by which the bar grew.
  EXPECT_LE(painted["Picture3(2)"].boundingRect().width(), 8);

  form.picAPC_DblClick();
  watch.Take();
  SetGauge(state.Main, panel, kLoad, 36);
  panel.Label2[kLoad].Caption("37");
  const auto dials = watch.Take();
  EXPECT_EQ(dials.keys(), (QStringList{"Image2", "Label2(2)"}));
  EXPECT_LE(dials["Image2"].boundingRect().width(), 60);
}

TEST_F(FacesTest, DoubleClickOnTheSurfaceChangesTheFace) {
  EXPECT_TRUE(BarsUp());
  DoubleClick(Find("picAPC"), {10, 5});
  EXPECT_TRUE(Dials().isVisible());
  EXPECT_FALSE(Find("picAPC").isVisible());
  DoubleClick(Dials(), {2, 2});
  EXPECT_TRUE(BarsUp());
}

TEST_F(FacesTest, DoubleClickOnAControlDoesNot) {
  for (const QWidget* control : Find("picAPC").findChildren<QWidget*>()) {
    DoubleClick(const_cast<QWidget&>(*control), Middle(*control));
    ASSERT_TRUE(BarsUp()) << control->objectName().toStdString();
  }
  form.picAPC_DblClick();
  for (QWidget* control : Dials().findChildren<QWidget*>()) {
    DoubleClick(*control, Middle(*control));
    ASSERT_TRUE(Dials().isVisible()) << control->objectName().toStdString();
  }
  DoubleClick(Dials(), {2, 2}, {.button = Qt::RightButton});
  EXPECT_TRUE(Dials().isVisible());
}

TEST_F(FacesTest, BothFacesFollowTheValuesWhicheverIsUp) {
  form.picAPC_DblClick();
  status.load = "080";
  Poll();
  EXPECT_EQ(window.findChild<QLabel*>("lblApcLoad")->text(), "80");
  EXPECT_NEAR(Row(2).BarRect().width() * 15, 80 * 31.7 + 15, 0.01);
  form.Image2_DblClick();
  status.load = "020";
  Poll();
  EXPECT_EQ(window.findChild<QLabel*>("Label2(2)")->text(), "20");
  EXPECT_NEAR(Dials().NeedleLine(kLoad).angle(), 14.4, 0.1);
}

TEST_F(FacesTest, ReloadBringsTheBarsBackAtRest) {
  Polls(2);
  form.picAPC_DblClick();
  form.Form_QueryUnload();
  form.Form_Load();
  EXPECT_TRUE(BarsUp());
  for (int i = 0; i < 6; ++i) EXPECT_NEAR(Row(i).BarRect().width() * 15, 15, 0.001);
  EXPECT_EQ(window.findChild<QLabel*>("Label2(0)")->text(), "0");
  EXPECT_EQ(window.findChild<QLabel*>("lblApcAc")->text(), "");
}

}  // namespace
}  // namespace orvane::test
