// The two moments that count when the mains fails: from the tick that reaches zero to the UPS's
// command at the port, and from a reply that tells of a fault to the count running and both
// journals on the medium. "memory" leaves the medium out; "disk" writes real files in the current
// directory.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <optional>

#include "link/ups_link.h"
#include "platform/linux/linux_disk.h"
#include "protect/countdown.h"
#include "support/status_frame.h"
#include "support/world.h"

namespace orvane::test {
namespace {

using Clock = std::chrono::steady_clock;

double Since(Clock::time_point begun) {
  return std::chrono::duration<double>(Clock::now() - begun).count();
}

// The core on a disk of choice. The folder goes with the object.
struct Bench : World {
  explicit Bench(bool real) {
    if (real) {
      char name[] = "protect-bench-XXXXXX";
      folder = mkdtemp(name);
    }
    Disk& medium = real ? static_cast<Disk&>(real_disk) : disk;
    written.emplace(medium, time, real ? folder : host.ProgramDirectory());
    state.Settings = {1, 0, 60, 0, 20, 0, 30, 1, 3, 0, 0};
    state.ShutdownCommand = "S01";
    static_cast<void>(ups_port.Open());
    ups_port.Notify(true);
  }
  ~Bench() {
    std::error_code error;
    if (!folder.empty()) std::filesystem::remove_all(folder, error);
  }

  LinuxDisk real_disk;
  std::string folder;
  std::optional<Journals> written;
};

void TickToCommand(benchmark::State& run, bool real) {
  Bench bench(real);
  bench.panel.mains.Caption("Fail");
  bench.panel.battery.Caption("Normal");
  double elapsed = 0;
  Clock::time_point begun;
  bench.ups_port.OnSent = [&](const std::string&) { elapsed = Since(begun); };
  for (auto _ : run) {
    Shutdown shutdown(bench.state, bench.panel, *bench.written, bench.seams);
    Countdown countdown(bench.state, bench.panel, shutdown, bench.seams);
    bench.state.Main.AlertSeconds = 59;
    bench.state.ShutdownCountdown = 1;
    begun = Clock::now();
    countdown.OnCountdown();
    run.SetIterationTime(elapsed);
    bench.events.clear();
    bench.ups_port.sent.clear();
    bench.disk.files.clear();
  }
}

void ReplyToJournals(benchmark::State& run, bool real) {
  Bench bench(real);
  UpsLink link(bench.state, bench.panel, *bench.written, bench.seams);
  link.Attach();
  const std::string well = StatusFrame{}.Text();
  const std::string failed = StatusFrame{.bits = "1000"}.Text();
  for (auto _ : run) {
    bench.ups_port.Receive(well);
    // All but the last character, which the program waits for.
    bench.ups_port.Receive(failed.substr(0, 46));
    const auto begun = Clock::now();
    bench.ups_port.Receive(failed.substr(46));
    run.SetIterationTime(Since(begun));
    if (!bench.countdown_timer.Enabled() || bench.state.Main.EventArmed[Fault::kMains]) {
      run.SkipWithError("the fault was not reacted to");
      break;
    }
    bench.events.clear();
    bench.ups_port.sent.clear();
    bench.disk.files.clear();
  }
}

// What is timed on a disk is a small part of what is done, so the rounds are counted.
constexpr int kRounds = 300;

BENCHMARK_CAPTURE(TickToCommand, memory, false)->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(TickToCommand, disk, true)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond)
    ->Iterations(kRounds);
BENCHMARK_CAPTURE(ReplyToJournals, memory, false)->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(ReplyToJournals, disk, true)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond)
    ->Iterations(kRounds);

}  // namespace
}  // namespace orvane::test

BENCHMARK_MAIN();
