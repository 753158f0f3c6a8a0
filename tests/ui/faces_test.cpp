// The two faces of the main form: what moves on them, what is painted, and how they change.
#include <gtest/gtest.h>

#include <QImage>
#include <QMap>
#include <QPaintEvent>
#include <QScreen>
#include <QTest>

#include "app/gauges.h"
#include "support/running_program.h"
#include "ui/bar_face.h"
#include "ui/dial_face.h"
#include "ui/main_window.h"
#include "ui/parts.h"

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

// In the rows from top to bottom; the last value is beyond the scale, where the trough cuts.
TEST_F(FacesTest, BarsEndUnderTheMarksOfTheirValues) {
  for (int i = 0; i < 6; ++i) EXPECT_NEAR(Width(i), 15, 0.001) << "before the first reply";
  status = {"165.0", "275.0", "025", "50.0", "2.27", "60.0"};
  Poll();
  const char* const marks[][2] = {{"lblMark(3)", "165"}, {"lblMark(12)", "275"},
                                  {"lblMark(15)", "25"}, {"lblMark(26)", "100"},
                                  {"lblMark(31)", "60"}, {"lblMark(35)", "50"}};
  for (int i = 0; i < 6; ++i) {
    const auto& [mark, text] = marks[i];
    EXPECT_EQ(TextOf(window, mark), text);
    const QRectF place(Part(window, mark).geometry());
    EXPECT_NEAR(place.center().x(), Row(i).x() + Row(i).BarRect().right(), 0.75) << mark;
  }
  EXPECT_NEAR(Width(2), 25 * 31.7 + 15, 0.01);
  status.load = "160";
  Poll();
  EXPECT_NEAR(Width(2), 4785, 0.01);
  const QImage trough = Row(2).grab().toImage();
  EXPECT_NEAR(CountOf({0, 128, 0}, trough.copy(0, 8, trough.width(), 1)), Width(2) / 15, 0.51);
}

TEST_F(FacesTest, NeedlesPointAtTheMarksOfTheirValues) {
  const std::pair<const char*, std::int16_t> marks[] = {{"Label12(2)", 210}, {"Label12(6)", 210},
                                                        {"Label12(21)", 25}, {"Label10(3)", 100},
                                                        {"Label12(8)", 30},  {"Label11(4)", 60}};
  for (int i = 0; i < 6; ++i) {
    const auto& [name, value] = marks[i];
    EXPECT_EQ(TextOf(window, name), std::to_string(value));
    SetGauge(state.Main, panel, i, value);
    const QLineF needle = dials.NeedleLine(static_cast<std::size_t>(i));
    const QLineF arm(needle.p1(), QRectF(Part(window, name).geometry()).center());
    EXPECT_NEAR(std::remainder(arm.angle() - needle.angle(), 360), 0, 1) << name;
    EXPECT_GT(arm.length(), needle.length()) << name;
  }
  SetGauge(state.Main, panel, kLoad, 100);
  const QImage picture = dials.grab().toImage();
  const QLineF needle = dials.NeedleLine(kLoad);
  const QColor inside = picture.pixelColor(needle.pointAt(0.6).toPoint());
  EXPECT_TRUE(inside.blue() > 200 && inside.red() < 120) << inside.name().toStdString();
  EXPECT_GT(picture.pixelColor(needle.pointAt(1.06).toPoint()).red(), 150);
}

// Only what changed is painted, and what has moved leaves nothing behind.
TEST_F(FacesTest, ScreenShowsWhatAWholeRepaintWould) {
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
    if (load == "000") form.picAPC_DblClick();
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
  for (QWidget* face : {&board, static_cast<QWidget*>(&dials)}) {
    ASSERT_TRUE(face->isVisible());
    for (QWidget* control : face->findChildren<QWidget*>()) {
      QTest::mouseDClick(control, Qt::LeftButton);
      ASSERT_TRUE(face->isVisible()) << control->objectName().toStdString();
    }
    QTest::mouseDClick(face, Qt::RightButton, {}, {2, 2});
    EXPECT_TRUE(face->isVisible());
    QTest::mouseDClick(face, Qt::LeftButton, {}, {2, 2});
    EXPECT_FALSE(face->isVisible());
  }
  EXPECT_TRUE(board.isVisible());
}

}  // namespace
}  // namespace orvane::test
