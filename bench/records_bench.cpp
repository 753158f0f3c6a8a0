// The journals of many years in their windows: from the click to the picture, and from picture to
// picture. bench/make_records makes the files; ORVANE_BENCH_RECORDS names their directory.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QPushButton>
#include <QScrollBar>
#include <cstdlib>
#include <memory>
#include <random>

#include "platform/linux/linux_disk.h"
#include "support/world.h"
#include "ui/day_history_window.h"
#include "ui/log_window.h"
#include "ui/long_list.h"
#include "ui/look.h"

namespace orvane::test {
namespace {

std::string FileOf(const char* name) {
  const char* directory = std::getenv("ORVANE_BENCH_RECORDS");
  return std::string(directory ? directory : ".") + '/' + name;
}

struct Bench : World {
  LinuxDisk real_disk;
  const std::string date_rec = FileOf("DateRec.rec");
  const std::string log = FileOf("System.log");

  // The first day of the file, or any day that its steps lead to.
  Bench() { time.SetWall({1999, 1, 1, 12, 0, 0}); }

  std::unique_ptr<DayHistoryWindow> DayHistory() {
    return std::make_unique<DayHistoryWindow>(state, real_disk, time, date_rec);
  }
  std::unique_ptr<LogWindow> Log() {
    return std::make_unique<LogWindow>(state, real_disk, dialogs, log);
  }
};

// Until everything of the window has been painted.
void Paint(QWidget& window) {
  window.show();
  QApplication::processEvents();
  window.repaint();
}

void OpenDayHistory(benchmark::State& state) {
  Bench bench;
  for (auto _ : state) {
    const auto window = bench.DayHistory();
    Paint(*window);
    state.PauseTiming();
    if (!window->findChild<QWidget*>("mark_0")) state.SkipWithError("no records");
    state.ResumeTiming();
  }
}

void StepToAnotherDay(benchmark::State& state) {
  Bench bench;
  const auto window = bench.DayHistory();
  Paint(*window);
  auto* next = window->findChild<QPushButton*>("next");
  for (auto _ : state) {
    next->click();
    window->repaint();
  }
}

void ReadDayRecords(benchmark::State& state) {
  Bench bench;
  DayHistory history(bench.real_disk, bench.time, bench.date_rec);
  for (auto _ : state) history.Load();
  const DayRecords& records = history.Records();
  state.counters["records"] = static_cast<double>(records.Count());
}

void OpenLog(benchmark::State& state) {
  Bench bench;
  for (auto _ : state) {
    const auto window = bench.Log();
    Paint(*window);
  }
}

void ScrollLog(benchmark::State& state) {
  Bench bench;
  const auto window = bench.Log();
  Paint(*window);
  auto* list = window->findChild<LongList*>("lines");
  QScrollBar* bar = list->verticalScrollBar();
  std::mt19937 random(1);
  std::uniform_int_distribution<int> anywhere(0, bar->maximum());
  for (auto _ : state) {
    bar->setValue(anywhere(random));
    list->viewport()->repaint();
  }
  state.counters["lines"] = static_cast<double>(list->model()->rowCount());
}

BENCHMARK(OpenDayHistory)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(StepToAnotherDay)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(ReadDayRecords)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(OpenLog)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(ScrollLog)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
}  // namespace orvane::test

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  orvane::look::Apply(application);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
