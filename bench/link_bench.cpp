// The way of a reply: received, decoded, evaluated and written to the panel. The counter
// "allocations" is heap allocations per reply once warm.
#include <benchmark/benchmark.h>

#include <atomic>
#include <cstdlib>
#include <new>

#include "app/gauges.h"
#include "app/messages.h"
#include "link/ups_link.h"
#include "support/status_frame.h"
#include "support/world.h"

namespace {

std::atomic<std::size_t> allocations{0};

}  // namespace

// Not inlined, or the compiler takes the pair of malloc and free for a mismatch.
[[gnu::noinline]] void* operator new(std::size_t size) {
  ++allocations;
  if (void* memory = std::malloc(size)) return memory;
  throw std::bad_alloc();
}

[[gnu::noinline]] void operator delete(void* memory) noexcept {
  std::free(memory);
}

[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}

namespace orvane::test {
namespace {

struct Bench : World {
  UpsLink link{state, panel, journals, seams};

  Bench() {
    link.Attach();
    ups_port.Open();
    ups_port.Notify(true);
    CaptureNeedles(panel, state.Main);
  }

  void Run(benchmark::State& run, const std::vector<std::string>& replies) {
    std::size_t i = 0;
    const auto next = [&] {
      ups_port.Receive(replies[i]);
      i = i + 1 == replies.size() ? 0 : i + 1;
    };
    for (int warm = 0; warm < 1000; ++warm) next();
    const std::size_t before = allocations;
    for (auto _ : run) next();
    run.counters["allocations"] = benchmark::Counter(static_cast<double>(allocations - before),
                                                     benchmark::Counter::kAvgIterations);
    run.SetItemsProcessed(run.iterations());
  }
};

void StatusReplySameValues(benchmark::State& run) {
  Bench().Run(run, {StatusFrame{}.Text()});
}
BENCHMARK(StatusReplySameValues);

void StatusReplyAllValuesChange(benchmark::State& run) {
  Bench().Run(run, {StatusFrame{}.Text(), StatusFrame{.input = "221.3",
                                                      .output = "229.1",
                                                      .load = "047",
                                                      .frequency = "49.9",
                                                      .battery = "2.11",
                                                      .temperature = "31.5"}
                                              .Text()});
}
BENCHMARK(StatusReplyAllValuesChange);

void StatusReplyStatesChange(benchmark::State& run) {
  Bench().Run(run, {StatusFrame{}.Text(), StatusFrame{.bits = "0010"}.Text()});
}
BENCHMARK(StatusReplyStatesChange);

void InformationReplyValuesChange(benchmark::State& run) {
  Bench().Run(run, {"OV-1000,700,2.1,220,x,8,12,y,zzzzz\r", "OV-2000,1400,2.2,230,x,16,24,y,z\r"});
}
BENCHMARK(InformationReplyValuesChange);

}  // namespace
}  // namespace orvane::test

BENCHMARK_MAIN();
