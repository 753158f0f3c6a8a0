// What a running call costs: the passes that fifty seconds of silence take, and a modem that floods
// the line.
#include <benchmark/benchmark.h>

#include <string>

#include "app/settings.h"
#include "dial/dialler.h"
#include "support/world.h"

namespace orvane::test {
namespace {

struct Call : World {
  Dialler dialler{state, panel, seams};

  Call() {
    dialler.Attach();
    state.PhoneCode = "5550100";
    state.Settings[kModemPort] = 2;
    dial_timer.Enabled(true);
    dialler.Dial();
  }
};

void PassWithoutAReply(benchmark::State& run) {
  Call call;
  for (auto _ : run) {
    call.modem_timer.Tick();
    if (!call.dialler.Running()) {
      call.dial_timer.Enabled(true);
      call.dialler.Dial();
    }
  }
}
BENCHMARK(PassWithoutAReply);

// Bytes that hold no word of the modem's, in the pieces that a look finds.
void Flood(benchmark::State& run) {
  const auto size = static_cast<std::size_t>(run.range(0));
  std::string noise;
  while (noise.size() < size) noise += "NO CARRIE BUS O\r\n";
  noise.resize(size);
  Call call;
  for (auto _ : run) {
    call.modem_port.Receive(noise);
    call.modem_timer.Tick();
    if (!call.dialler.Running()) {
      call.dial_timer.Enabled(true);
      call.dialler.Dial();
    }
  }
  run.SetBytesProcessed(run.iterations() * run.range(0));
}
BENCHMARK(Flood)->Arg(16)->Arg(4096)->Arg(65536)->Arg(1 << 20);

}  // namespace
}  // namespace orvane::test

BENCHMARK_MAIN();
