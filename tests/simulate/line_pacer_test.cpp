#include "simulate/line_pacer.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace orvane::test {
namespace {

using namespace std::chrono_literals;

using Chunks = std::vector<std::pair<Moment, std::string>>;

// Everything on the way, with the moments of its arrival.
Chunks Arrivals(LinePacer& pacer) {
  Chunks chunks;
  while (const auto next = pacer.Next()) {
    EXPECT_EQ(pacer.Take(*next - 1ms), "");
    chunks.emplace_back(*next, pacer.Take(*next));
    if (chunks.back().second.empty()) break;
  }
  return chunks;
}

TEST(LinePacerTest, BytesArriveInFifoLoadsAtTheSpeedOfTheLine) {
  LinePacer pacer(2400);
  const std::string a(16, 'a'), b(16, 'b'), c(15, 'c');
  pacer.Put(a + b + c, 1000ms);
  // 47 bytes take 195.8 ms at 240 a second.
  EXPECT_EQ(Arrivals(pacer), (Chunks{{1067ms, a}, {1134ms, b}, {1196ms, c}}));
  pacer.Put("12345", 2000ms);  // would be there at 2021 ms
  pacer.Put("678", 2010ms);
  EXPECT_EQ(Arrivals(pacer), (Chunks{{2034ms, "12345678"}}));

  for (int i = 0; i < 100; ++i) pacer.Put(std::string(1000, 'x'), 1h);
  std::size_t bytes = 0;
  for (const auto& [due, chunk] : Arrivals(pacer)) bytes += chunk.size();
  EXPECT_EQ(bytes, LinePacer::kBacklog);
}

}  // namespace
}  // namespace orvane::test
