// A year of random weather, with clocks that are set and programs that are started anew, against a
// plain model.
#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <random>

#include "history/outages.h"
#include "history/recorder.h"
#include "support/fake_time.h"
#include "support/memory_history.h"

namespace orvane::test {
namespace {

using std::chrono::minutes;
using std::chrono::seconds;

// A panel as the link leaves it, a second at a time.
struct Watch {
  FakeTime time;
  State state;
  Panel panel;
  MemoryHistory store;
  std::optional<Recorder> recorder;

  Watch() { Restart(); }
  void Restart() {
    state.Main = {};
    recorder.emplace(state, panel, time);
    recorder->KeepIn(store);
  }
  void Link(bool up) {
    panel.link.Caption(up ? "Conn" : "Not Conn");
    panel.link.ForeColor(up ? kBlue : kRed);
  }
  void Mains(bool fails) {
    panel.mains.Caption(fails ? "Fail" : "Normal");
    panel.mains.ForeColor(fails ? kRed : kBlue);
  }
  void Answer(int load, int battery) {
    state.Main.PollsAnswered = ++state.Main.PollsSent;
    for (const Gauge gauge : kGauges) panel.read_outs[gauge].Caption("230.4");
    panel.read_outs[Gauge::kLoad].Caption(std::to_string(load));
    panel.read_outs[Gauge::kBattery].Caption(std::to_string(battery));
  }
  void Set(seconds by) {
    time.Jump(by);  // the wall is what the recorder sees
  }
  void Second() {
    time.Jump(seconds(1));
    recorder->Look();
  }
};

TEST(RecorderTest, AYearOfWeatherMatchesAPlainModel) {
  Watch watch;
  std::mt19937 dice(7);
  const auto roll = [&](int sides) { return static_cast<int>(dice() % unsigned(sides)); };
  std::map<sys_seconds, std::pair<std::int64_t, std::int64_t>> expected;  // readings, load
  std::map<sys_seconds, std::pair<std::int64_t, std::int64_t>> run;       // since the last jump
  const auto settle = [&] {
    for (const auto& [begin, sum] : run) expected.try_emplace(begin, sum);
    run.clear();
  };
  int outages = 0;
  bool fails = false;
  bool linked = true;
  watch.Link(true);
  watch.Mains(false);
  // Twenty minutes of each of 365 days, from second to second.
  for (int day = 0; day < 365; ++day) {
    for (int second = 0; second < 1200; ++second) {
      if (roll(2500) == 0) {
        watch.Mains(fails = !fails);
        outages += fails && linked;
      }
      if (roll(4000) == 0) {
        watch.Link(linked = !linked);
        outages += fails && linked;
      }
      if (linked && second % 2 == 0) {
        const int load = roll(101);
        watch.Answer(load, 50 + roll(50));
        const sys_seconds at = watch.time.SystemSeconds() + seconds(1);
        auto& [readings, sum] = run[std::chrono::floor<minutes>(at)];
        ++readings;
        sum += load * 100;
      }
      watch.Second();
      if (!linked) settle();
    }
    // The night: a sleep, or a clock that is set back into what has been.
    watch.Set(roll(5) == 0 ? -seconds(600 + roll(1200)) : seconds(85200));
    settle();
    outages += fails && linked;
  }
  watch.Second();
  watch.recorder->End();
  ASSERT_EQ(watch.store.kept.size(), expected.size());
  for (const auto& [begin, sample] : watch.store.kept) {
    ASSERT_TRUE(expected.contains(begin));
    ASSERT_EQ(sample.readings, expected[begin].first) << begin.time_since_epoch().count();
    ASSERT_EQ(sample.values[Gauge::kLoad].sum, expected[begin].second);
    ASSERT_EQ(sample.values[Gauge::kInput].least, 23040);
  }
  int found = 0;
  for (const auto& [id, episode] : watch.store.episodes) {
    found += episode.kind == EpisodeKind::kMainsFailure;
    ASSERT_NE(episode.ending, Ending::kNotYet);
    ASSERT_LE(episode.begin, episode.end);
    ASSERT_LE(episode.end - episode.begin, seconds(1200));
  }
  EXPECT_EQ(found, outages);
}

TEST(RecorderTest, EpisodesKnowTheirExtremesAndEnds) {
  Watch watch;
  watch.Link(true);
  watch.Mains(false);
  watch.Answer(30, 100);
  watch.Second();
  watch.Mains(true);
  for (int minute = 0; minute < 10; ++minute) {
    watch.Answer(30 + minute, 100 - minute);
    for (int i = 0; i < 60; ++i) watch.Second();
  }
  // One at the begin, one a minute.
  EXPECT_LE(watch.store.writes, 12);
  Episode outage = watch.store.episodes.at(1);
  EXPECT_EQ(outage.ending, Ending::kNotYet);

  // A program that died leaves it open; the next one ends it where the first was last seen.
  watch.Set(minutes(90));
  watch.Restart();
  watch.Second();
  outage = watch.store.episodes.at(1);
  EXPECT_EQ(outage.ending, Ending::kUnknown);
  EXPECT_LE(outage.end - outage.begin, minutes(11));

  watch.recorder->BeginWayDown();
  outage = watch.store.episodes.at(2);
  EXPECT_EQ(outage.ending, Ending::kShutdown);
  EXPECT_EQ(outage.first_battery, 9100);
  EXPECT_EQ(watch.store.episodes.at(3).kind, EpisodeKind::kWayDown);
}

TEST(RecorderTest, ASelfTestLastsAsTheUpsTellsOrElseAsOrdered) {
  const auto order = [](Watch& watch) { watch.recorder->BeginSelfTest(seconds(10)); };
  const auto cancel = [](Watch& watch) { watch.recorder->EndSelfTest(); };
  const auto tell = [](char bit) {
    return [bit](Watch& watch) { watch.state.Main.Data.test_bit = bit; };
  };
  const auto fail = [](Watch& watch) { watch.Mains(true); };
  const struct {
    const char* name;
    std::map<int, std::function<void(Watch&)>> deeds;  // by their second
    int length;                                        // -1 without any
  } kCases[] = {
      {"ordered of one that tells nothing", {{5, order}}, 10},
      {"ordered again", {{5, order}, {10, order}}, 15},
      {"cancelled", {{5, order}, {8, cancel}}, 3},
      {"ended by the mains", {{5, order}, {8, fail}}, 3},
      {"ordered while the mains is away", {{2, fail}, {5, order}}, -1},
      {"begun by the UPS", {{5, tell('1')}, {35, tell('0')}}, 30},
      {"ordered and told", {{5, order}, {7, tell('1')}, {30, tell('0')}}, 25},
      {"cancelled, and told a while",
       {{5, order}, {7, tell('1')}, {9, cancel}, {11, tell('0')}},
       6},
  };
  for (const auto& [name, deeds, length] : kCases) {
    SCOPED_TRACE(name);
    Watch watch;
    watch.Link(true);
    watch.Mains(false);
    for (int second = 0; second < 60; ++second) {
      if (deeds.contains(second)) deeds.at(second)(watch);
      watch.Second();
    }
    std::vector<int> lengths;
    for (const auto& [id, episode] : watch.store.episodes) {
      if (episode.kind != EpisodeKind::kSelfTest) continue;
      EXPECT_EQ(episode.ending, Ending::kOver);
      lengths.push_back(static_cast<int>((episode.end - episode.begin).count()));
    }
    // What the recorder looks at is a second old.
    if (length < 0) {
      EXPECT_TRUE(lengths.empty());
    } else {
      ASSERT_EQ(lengths.size(), 1U);
      EXPECT_NEAR(lengths[0], length, 1);
    }
  }
}

TEST(RecorderTest, WhatTheStoreRefusesWaits) {
  Watch watch;
  watch.Link(true);
  watch.store.refuses = true;
  for (int i = 0; i < 300; ++i) {
    watch.Answer(20, 100);
    watch.Second();
  }
  EXPECT_TRUE(watch.store.kept.empty());
  watch.store.refuses = false;
  watch.recorder->End();
  EXPECT_GE(watch.store.kept.size(), 5U);
}

TEST(OutagesTest, EnduranceNeedsTwoDischarges) {
  const auto outage = [](int minute, std::int64_t lowest, std::int64_t load) {
    const sys_seconds begin(minutes(10000 * minute));
    return Episode{minute,        EpisodeKind::kMainsFailure,
                   begin,         begin + minutes(minute),
                   Ending::kOver, 10000,
                   lowest,        load,
                   load};
  };
  std::vector<Episode> episodes{outage(4, 8000, 3000), outage(1, 9900, 3000)};
  EXPECT_FALSE(EnduranceAt(episodes, 3000));  // the second one lost too little to tell
  episodes.push_back(outage(8, 5000, 3000));
  const auto endurance = EnduranceAt(episodes, 6000);
  ASSERT_TRUE(endurance);
  EXPECT_DOUBLE_EQ(endurance->minutes, 9);
  EXPECT_DOUBLE_EQ(endurance->least, 8);
  EXPECT_DOUBLE_EQ(endurance->most, 10);
  EXPECT_EQ(endurance->discharges, 2);

  const OutageSums sums = SumsOf(episodes, sys_seconds(minutes(10000)), sys_seconds(minutes(40002)),
                                 sys_seconds(minutes(90000)));
  EXPECT_EQ(sums.number, 2);
  EXPECT_EQ(sums.total, minutes(3));  // one whole, and the half of another
  EXPECT_EQ(sums.longest, minutes(2));
}

}  // namespace
}  // namespace orvane::test
