#include "ui/history_window.h"

#include <QLabel>
#include <QProcess>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>
#include <QWheelEvent>

#include "support/memory_history.h"
#include "support/temp_folder.h"
#include "ui/history_chart.h"
#include "ui/opened_window.h"

namespace orvane::test {
namespace {

using std::chrono::hours;
using std::chrono::minutes;
using std::chrono::seconds;

struct HistoryWindowTest : OpenedWindow {
  MemoryHistory history;
  sys_seconds now = std::chrono::floor<minutes>(time.SystemSeconds());
  HistoryWindow* opened = nullptr;
  HistoryChart* chart = nullptr;

  // A week with its readings but for an hour of yesterday, and with two mains failures.
  HistoryWindowTest() {
    for (sys_seconds begin = now - hours(168); begin < now; begin += minutes(1)) {
      if (begin >= now - hours(30) && begin < now - hours(29)) continue;
      Measure(begin);
    }
    Fail(1, now - hours(100), minutes(20), Ending::kOver);
    Fail(2, now - minutes(5), minutes(0), Ending::kNotYet);
  }
  void Measure(sys_seconds begin) {
    Sample sample{begin, 0, {}};
    PerGauge<std::int64_t> reading;
    for (auto& gauge : reading) gauge = 23040;
    sample.Add(reading);
    history.kept.emplace(begin, sample);
  }
  void Fail(int id, sys_seconds begin, seconds length, Ending ending) {
    history.episodes[id] = {
        id, EpisodeKind::kMainsFailure, begin, begin + length, ending, 10000, 6200, 3500, 3000};
  }

  void OpenHistory() {
    opened = new HistoryWindow(state, panel, history, time, dialogs);
    Open(opened);
    chart = &Part<HistoryChart>(*window, "chart");
  }
  QString Cell(int row, int column) const {
    return Part<QTreeWidget>(*window, "outages").topLevelItem(row)->text(column);
  }
  double XOf(sys_seconds at) const {
    return 54 + (chart->width() - 70) * static_cast<double>((at - chart->From()).count()) /
                    static_cast<double>((chart->To() - chart->From()).count());
  }
  void Wheel(int steps, Qt::KeyboardModifiers modifiers) {
    const QPointF at(XOf(chart->From() + (chart->To() - chart->From()) / 4), 100);
    QWheelEvent event(at, chart->mapToGlobal(at), {}, QPoint(0, 120 * steps), Qt::NoButton,
                      modifiers, Qt::NoScrollPhase, false);
    QApplication::sendEvent(chart, &event);
  }
};

TEST_F(HistoryWindowTest, KeysAndWheelZoomAndWalk) {
  OpenHistory();
  const sys_seconds present = time.SystemSeconds();
  const auto press = [](Qt::Key key) {
    return [key](HistoryWindowTest& test) { QTest::keyClick(test.chart, key); };
  };
  const struct {
    const char* name;
    std::function<void(HistoryWindowTest&)> act;
    sys_seconds from, to;
  } kSteps[] = {
      {"opened", [](HistoryWindowTest&) {}, present - hours(24), present},
      {"left", press(Qt::Key_Left), present - hours(27), present - hours(3)},
      {"page up", press(Qt::Key_PageUp), present - hours(51), present - hours(27)},
      {"wheel", [](HistoryWindowTest& test) { test.Wheel(1, {}); }, present - minutes(2988),
       present - minutes(1836)},
      {"home", press(Qt::Key_Home), now - hours(168), now - minutes(168 * 60 - 1152)},
      {"end", press(Qt::Key_End), present - minutes(1152), present},
      {"minus", press(Qt::Key_Minus), present - hours(24), present},
      {"right", press(Qt::Key_Right), present - hours(24), present},
      {"wheel aside", [](HistoryWindowTest& test) { test.Wheel(1, Qt::ShiftModifier); },
       present - hours(27), present - hours(3)},
      {"a week", [](HistoryWindowTest& test) { test.Push("week"); }, present - hours(168), present},
      {"and again", [](HistoryWindowTest& test) { test.Push("week"); }, present - hours(168),
       present},
  };
  for (const auto& [name, act, from, to] : kSteps) {
    SCOPED_TRACE(name);
    act(*this);
    // As exact as a pixel of the pointer.
    EXPECT_LE(std::chrono::abs(chart->From() - from), minutes(2));
    EXPECT_LE(std::chrono::abs(chart->To() - to), minutes(2));
  }
  EXPECT_TRUE(Part<QAbstractButton>(*window, "week").isChecked());
}

TEST_F(HistoryWindowTest, TheListLeadsToItsOutagesAndGrowsWithThem) {
  OpenHistory();
  ASSERT_EQ(Part<QTreeWidget>(*window, "outages").topLevelItemCount(), 2);
  EXPECT_EQ(Cell(0, 1), "0:05:33");
  EXPECT_EQ(Cell(0, 3), "still lasts");
  EXPECT_EQ(Cell(1, 2), "62 %");

  // The present goes on, with an outage that ends and another one that begins.
  time.Jump(minutes(10));
  Measure(now);
  Fail(2, now - minutes(5), minutes(7), Ending::kOver);
  Fail(3, now + minutes(8), minutes(0), Ending::kNotYet);
  Part<QTimer>(*window, "follow").setInterval(0);
  QTest::qWait(0);
  ASSERT_EQ(Part<QTreeWidget>(*window, "outages").topLevelItemCount(), 3);
  EXPECT_EQ(Cell(0, 1), "0:02:33");
  EXPECT_EQ(Cell(1, 1), "0:07:00");
  EXPECT_EQ(Cell(1, 3), "mains back");
  EXPECT_EQ(chart->To(), time.SystemSeconds());
  EXPECT_EQ(chart->Samples().back().begin, now);

  auto& list = Part<QTreeWidget>(*window, "outages");
  QTest::mouseClick(list.viewport(), Qt::LeftButton, {},
                    list.visualItemRect(list.topLevelItem(2)).center());
  EXPECT_EQ(chart->From(), now - hours(100) - minutes(30));
  EXPECT_EQ(chart->To(), now - hours(100) + minutes(50));
  EXPECT_EQ(Part<QLabel>(*window, "sums").text().section(": ", 1),
            "outages 1, total 0:20:00, longest 0:20:00, availability 75.000 %");
  EXPECT_EQ(chart->TextAt(XOf(now - hours(100) + minutes(3))).section('\n', 1, 2),
            "Mains failure\nInput 230.4 (230.4 – 230.4) V");
}

TEST_F(HistoryWindowTest, AGapIsEmptyAndAnEmptyHistorySaysSo) {
  OpenHistory();
  chart->ShowAround(now - hours(31), now - hours(28));
  const QImage picture = chart->grab().toImage();
  const auto painted = [&](sys_seconds at) {
    const int x = static_cast<int>(XOf(at));
    int count = 0;
    for (int y = 30; y < picture.height() - 30; ++y) {
      count += picture.pixelColor(x, y).saturation() > 100;
    }
    return count;
  };
  EXPECT_GT(painted(now - hours(30) - minutes(11)), 0);
  EXPECT_EQ(painted(now - hours(30) + minutes(11)), 0);
  EXPECT_EQ(painted(now - hours(29) - minutes(11)), 0);
  EXPECT_EQ(chart->TextAt(XOf(now - hours(30) + minutes(11))).count('\n'), 0);

  history.kept.clear();
  history.episodes.clear();
  OpenHistory();
  QTest::keyClick(chart, Qt::Key_Home);
  EXPECT_EQ(chart->To(), time.SystemSeconds());
  EXPECT_TRUE(Part<QLabel>(*window, "endurance").isHidden());
  EXPECT_FALSE(opened->Save("/nowhere/history.csv"));
}

TEST_F(HistoryWindowTest, WhatIsSavedOthersCanRead) {
  const TempFolder folder;
  OpenHistory();
  Push("hour");
  ASSERT_TRUE(opened->Save(QString::fromStdString(folder.Path("a.csv"))));
  ASSERT_TRUE(opened->Save(QString::fromStdString(folder.Path("a.png"))));
  QProcess python;
  python.start(
      "/usr/bin/python3",
      {"-c",
       "import csv, sys, datetime\n"
       "rows = list(csv.DictReader(open(sys.argv[1], newline=''), strict=True))\n"
       "times = [datetime.datetime.fromisoformat(row['begin']) for row in rows]\n"
       "assert all(time.tzinfo for time in times)\n"
       "print(len(rows), times[0].timestamp(), rows[0]['readings'],\n"
       "      rows[-1]['temperature_mean'], open(sys.argv[1], 'rb').read().count(b'\\r\\n'))",
       QString::fromStdString(folder.Path("a.csv"))});
  ASSERT_TRUE(python.waitForFinished());
  EXPECT_EQ(
      python.readAllStandardOutput().toStdString(),
      "59 " + std::to_string((now - minutes(59)).time_since_epoch().count()) + ".0 1 230.40 60\n")
      << python.readAllStandardError().toStdString();
  EXPECT_EQ(QImage(QString::fromStdString(folder.Path("a.png"))).size(), chart->size());
}

}  // namespace
}  // namespace orvane::test
