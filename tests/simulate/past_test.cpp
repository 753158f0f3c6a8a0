#include "simulate/past.h"

#include <gtest/gtest.h>

#include <ctime>

#include "support/memory_history.h"

namespace orvane::test {
namespace {

using std::chrono::minutes;

TEST(PastTest, TwoMonthsWithSagsAndOutagesAndAGap) {
  const sys_seconds now{std::chrono::sys_days{std::chrono::year{2026} / 3 / 14} + minutes(911)};
  MemoryHistory history, again;
  ASSERT_TRUE(WritePast(history, now));
  ASSERT_TRUE(WritePast(again, now));
  EXPECT_EQ(history.kept, again.kept);
  EXPECT_EQ(history.episodes, again.episodes);
  EXPECT_EQ(history.kept.begin()->first, now - std::chrono::days(60));
  EXPECT_EQ(history.kept.rbegin()->first, now - minutes(1));

  int gaps = 0;
  PerGauge<Spread> limits{};
  int sagged = 0;
  sys_seconds before = now - std::chrono::days(60) - minutes(1);
  for (const auto& [begin, sample] : history.kept) {
    gaps += begin != before + minutes(1);
    before = begin;
    const std::int64_t mean = sample.values[Gauge::kInput].sum / sample.readings;
    const std::time_t stamp = begin.time_since_epoch().count();
    std::tm local{};
    localtime_r(&stamp, &local);
    if (local.tm_hour == 19 && local.tm_min == 30) sagged += mean < 21200 && mean > 20000;
    for (const Gauge gauge : kGauges) {
      const Spread& spread = sample.values[gauge];
      ASSERT_LE(spread.least * sample.readings, spread.sum);
      ASSERT_GE(spread.most * sample.readings, spread.sum);
      limits[gauge].most = std::max(limits[gauge].most, spread.most);
    }
  }
  EXPECT_EQ(gaps, 1);
  EXPECT_EQ(sagged, 60);
  EXPECT_EQ(limits[Gauge::kBattery].most, 10000);
  EXPECT_LT(limits[Gauge::kLoad].most, 7000);

  std::vector<std::int64_t> lowest;
  for (const auto& [id, episode] : history.episodes) {
    if (episode.kind == EpisodeKind::kMainsFailure) lowest.push_back(*episode.lowest_battery);
  }
  ASSERT_EQ(lowest.size(), 3U);
  EXPECT_LT(lowest[1], 5000);
  again.refuses = true;
  EXPECT_FALSE(WritePast(again, now));
}

}  // namespace
}  // namespace orvane::test
