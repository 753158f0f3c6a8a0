#include "simulate/line_pacer.h"

#include <gtest/gtest.h>

#include <optional>
#include <utility>

namespace orvane::test {
namespace {

using namespace std::chrono_literals;

TEST(LinePacerTest, BytesArriveInFifoLoadsAtTheSpeedOfTheLine) {
  LinePacer pacer(2400);
  const std::string a(16, 'a'), b(16, 'b'), c(15, 'c');
  pacer.Put(a + b, 1000ms);
  pacer.Put(c, 1010ms);
  // 47 bytes take 195.8 ms at 240 a second.
  const std::pair<Moment, std::string> arrivals[] = {{1067ms, a}, {1134ms, b}, {1196ms, c}};
  for (const auto& [due, chunk] : arrivals) {
    EXPECT_EQ(pacer.Next(), due);
    EXPECT_EQ(pacer.Take(due - 1ms), "");
    EXPECT_EQ(pacer.Take(due), chunk);
  }
  EXPECT_EQ(pacer.Next(), std::nullopt);
}

}  // namespace
}  // namespace orvane::test
