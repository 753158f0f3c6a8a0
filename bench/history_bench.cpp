// The history of ten years: from the click to the picture, and from picture to picture. And what a
// minute costs who writes it, beside a line of the log on the same disk (the current directory).
#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <QApplication>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>

#include "history/recorder.h"
#include "platform/linux/linux_disk.h"
#include "platform/sqlite/sqlite_history.h"
#include "support/world.h"
#include "ui/history_chart.h"
#include "ui/history_window.h"
#include "ui/look.h"

namespace orvane::test {
namespace {

using std::chrono::hours;
using std::chrono::minutes;
using std::chrono::seconds;

struct Folder {
  std::filesystem::path path = std::filesystem::current_path() / "history_bench_files";
  Folder() {
    std::filesystem::remove_all(path);
    std::filesystem::create_directory(path);
  }
  ~Folder() { std::filesystem::remove_all(path); }
  std::string File(const char* name) const { return path / name; }
};

void Complain(const std::string& line) {
  std::fprintf(stderr, "%s\n", line.c_str());
}

Sample SampleAt(sys_seconds begin, std::int64_t readings) {
  Sample sample{begin, readings, {}};
  const std::int64_t number = begin.time_since_epoch().count() / 60;
  for (const Gauge gauge : kGauges) {
    const std::int64_t mean = 5000 + (number * 37 + static_cast<int>(gauge) * 911) % 1000;
    sample.values[gauge] = {mean - 50, mean * readings, mean + 50};
  }
  return sample;
}

double SecondsOf(const timeval& time) {
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

double ProcessorSeconds() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return SecondsOf(usage.ru_utime) + SecondsOf(usage.ru_stime);
}

double ResidentMegabytes() {
  long whole = 0, resident = 0;
  std::ifstream("/proc/self/statm") >> whole >> resident;
  return static_cast<double>(resident * 4096) / 1e6;
}

double FileMegabytes(const Folder& folder) {
  double sum = 0;
  for (const auto& file : std::filesystem::directory_iterator(folder.path)) {
    sum += static_cast<double>(file.file_size()) / 1e6;
  }
  return sum;
}

// Ten years of hours and 40 days of minutes up to the present of `world`, with an outage a week.
struct TenYears : World {
  Folder folder;
  SqliteHistory history{folder.File("History.db"), Complain};
  sys_seconds now = std::chrono::floor<hours>(time.SystemSeconds());

  TenYears() {
    std::vector<Sample> samples;
    std::vector<Episode> episodes;
    // An hour of the past is told by one of its minutes.
    for (sys_seconds at = now - hours(kKeptHours); at < now - minutes(kKeptMinutes);
         at += hours(1)) {
      samples.push_back(SampleAt(at, 1800));
    }
    for (sys_seconds at = now - minutes(kKeptMinutes); at < now; at += minutes(1)) {
      samples.push_back(SampleAt(at, 30));
    }
    for (sys_seconds at = now - hours(kKeptHours); at < now; at += hours(168)) {
      Episode& episode = episodes.emplace_back();
      episode.id = static_cast<std::int64_t>(episodes.size());
      episode.begin = at;
      episode.end = at + minutes(10);
      episode.ending = Ending::kOver;
      episode.first_battery = 10000;
      episode.lowest_battery = 8000;
      episode.mean_load = 3000;
    }
    // A day at a time, so that the file comes out as one that grew.
    constexpr std::size_t kBatch = 1440;
    for (std::size_t i = 0; i < samples.size(); i += kBatch) {
      const auto begin = samples.begin() + static_cast<std::ptrdiff_t>(i);
      const auto end =
          samples.begin() + static_cast<std::ptrdiff_t>(std::min(samples.size(), i + kBatch));
      if (!history.Write({begin, end}, {})) Complain("not written");
    }
    if (!history.Write({}, episodes)) Complain("not written");
  }
};

TenYears& World10() {
  static TenYears world;
  return world;
}

struct Painted : QObject {
  int times = 0;
  explicit Painted(QWidget& widget) { widget.installEventFilter(this); }
  bool eventFilter(QObject*, QEvent* event) override {
    times += event->type() == QEvent::Paint;
    return false;
  }
};

// A file opened anew, and a window on it as large as a screen, with this stretch in view.
void Open(benchmark::State& state, seconds length) {
  TenYears& world = World10();
  for (auto _ : state) {
    SqliteHistory history(world.folder.File("History.db"), Complain);
    HistoryWindow window(world.state, world.panel, history, world.time, world.dialogs);
    auto* chart = window.findChild<HistoryChart*>();
    chart->ShowLast(length);
    window.resize(1920, 1080);
    window.show();
    const Painted painted(*chart);
    QApplication::processEvents();
    const auto size = std::filesystem::file_size(world.folder.File("History.db"));
    state.counters["disk_MB"] = static_cast<double>(size) / 1e6;
    if (chart->Samples().size() < 2 || painted.times == 0) state.SkipWithError("nothing to see");
  }
}

void Frame(benchmark::State& state, seconds length) {
  TenYears& world = World10();
  HistoryChart chart(world.state, world.history, world.time, nullptr);
  chart.ShowLast(length);
  chart.resize(1920, 1080);
  chart.show();
  QApplication::processEvents();
  for (auto _ : state) chart.repaint();
  state.counters["samples"] = static_cast<double>(chart.Samples().size());
}

// What the live end costs every ten seconds.
void Follow(benchmark::State& state, seconds length) {
  TenYears& world = World10();
  HistoryChart chart(world.state, world.history, world.time, nullptr);
  chart.ShowLast(length);
  for (auto _ : state) chart.Follow();
}

constexpr seconds kMinutes40Days = minutes(kKeptMinutes);
constexpr seconds kHours10Years = hours(kKeptHours);
BENCHMARK_CAPTURE(Open, minutes_of_40_days, kMinutes40Days)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Open, hours_of_10_years, kHours10Years)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Frame, minutes_of_40_days, kMinutes40Days)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Frame, hours_of_10_years, kHours10Years)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Follow, minutes_of_40_days, kMinutes40Days)->Unit(benchmark::kMicrosecond);

// Two months of a program with a poll every other second, each second as the clock's tick sees it.
void TwoMonths(benchmark::State& state) {
  constexpr double kDays = 61;
  for (auto _ : state) {
    const Folder folder;
    World world;
    const double memory = ResidentMegabytes();
    SqliteHistory history(folder.File("History.db"), Complain);
    Recorder recorder(world.state, world.panel, world.time);
    recorder.KeepIn(history);
    world.panel.link.ForeColor(kBlue);
    for (const Gauge gauge : kGauges) world.panel.read_outs[gauge].Caption("50.5");
    recorder.Look();
    const double before = ProcessorSeconds();
    for (int second = 0; second < kDays * 86400; ++second) {
      world.time.Jump(seconds(1));
      if (second % 2 == 0) world.state.Main.PollsAnswered = ++world.state.Main.PollsSent;
      // An outage every other day.
      const bool fails = second % 172800 < 300;
      world.panel.mains.Caption(fails ? "Fail" : "Normal");
      world.panel.mains.ForeColor(fails ? kRed : kBlue);
      recorder.Look();
    }
    state.counters["core_percent"] = (ProcessorSeconds() - before) / (kDays * 86400) * 100;
    state.counters["memory_MB"] = ResidentMegabytes() - memory;
    state.counters["disk_MB"] = FileMegabytes(folder);
  }
}
BENCHMARK(TwoMonths)->Unit(benchmark::kSecond)->Iterations(1);

// Thirty days of minutes and as many lines of the log in turn, so that both meet the same disk.
void LongestWait(benchmark::State& state) {
  constexpr int kWrites = 3000;
  using Clock = std::chrono::steady_clock;
  struct Waits {
    std::vector<double> ms;
    void Measure(const std::function<void()>& act) {
      const auto begin = Clock::now();
      act();
      ms.push_back(std::chrono::duration<double, std::milli>(Clock::now() - begin).count());
    }
    double Part(double part) {
      std::sort(ms.begin(), ms.end());
      return ms[static_cast<std::size_t>(part * static_cast<double>(ms.size() - 1))];
    }
  };
  for (auto _ : state) {
    const Folder folder;
    World world;
    LinuxDisk disk;
    Journals journals(disk, world.time, folder.path);
    SqliteHistory history(folder.File("History.db"), Complain);
    Waits log, minute;
    sys_seconds at = world.time.SystemSeconds();
    // The file of a program that has run for long, a day before it is thinned.
    std::vector<Sample> past;
    for (int i = 0; i < kKeptMinutes; ++i) past.push_back(SampleAt(at += minutes(1), 30));
    static_cast<void>(history.Write(past, {}));
    for (int i = 0; i < kWrites; ++i) {
      at += minutes(1);
      minute.Measure([&] { static_cast<void>(history.Write({SampleAt(at, 30)}, {})); });
      log.Measure([&] { static_cast<void>(journals.WriteLog("a line of the log")); });
    }
    for (auto& [name, waits] : {std::pair<std::string, Waits&>{"log", log}, {"minute", minute}}) {
      state.counters[name + "_median_ms"] = waits.Part(0.5);
      state.counters[name + "_p99_ms"] = waits.Part(0.99);
      state.counters[name + "_longest_ms"] = waits.Part(1);
    }
  }
}
BENCHMARK(LongestWait)->Unit(benchmark::kSecond)->Iterations(1);

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
