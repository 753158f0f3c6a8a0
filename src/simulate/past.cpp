#include "simulate/past.h"

#include <algorithm>
#include <cmath>
#include <ctime>
#include <numbers>
#include <random>

namespace orvane {
namespace {

using std::chrono::days;
using std::chrono::floor;
using std::chrono::hours;
using std::chrono::minutes;
using std::chrono::seconds;

constexpr int kDays = 60;
constexpr int kReadings = 30;         // a minute
constexpr double kSagVolts = 24;      // every evening
constexpr double kCharge = 0.4;       // percent a minute
constexpr double kDischarge = 0.035;  // percent a minute and percent of load,
constexpr double kPeukert = 1.12;     // and this much faster than in proportion
constexpr double kLow = 20;           // percent of the battery

struct Outage {
  int days_ago;
  minutes clock;  // of the local day
  seconds length;
  bool way_down;
};

constexpr Outage kOutages[] = {
    {47, hours(15) + minutes(12), seconds(740), false},
    {23, hours(2) + minutes(40), seconds(5330), true},
    {6, hours(20) + minutes(5), seconds(1510), false},
};
constexpr int kSelfTestEvery = 14;  // days
constexpr minutes kSelfTestClock = hours(9);
constexpr seconds kSelfTest{10};
constexpr seconds kWayDown{40};
constexpr minutes kSilence{295};  // from the way down until somebody comes

std::tm LocalOf(sys_seconds time) {
  const std::time_t stamp = time.time_since_epoch().count();
  std::tm local{};
  localtime_r(&stamp, &local);
  return local;
}

// A clock of the local day, `days_ago` of them back.
sys_seconds LocalTimeOf(sys_seconds now, int days_ago, minutes clock) {
  std::tm local = LocalOf(now);
  local.tm_mday -= days_ago;
  local.tm_hour = 0;
  local.tm_min = static_cast<int>(clock.count());
  local.tm_sec = 0;
  local.tm_isdst = -1;
  return sys_seconds(seconds(std::mktime(&local)));
}

class Past {
 public:
  Past(HistoryStore& store, sys_seconds now)
      : store_(store), now_(floor<minutes>(now)), last_id_(store.LastEpisode()) {}

  bool Write() {
    PlanEpisodes();
    std::vector<Sample> day;
    for (sys_seconds time = now_ - days(kDays); time < now_; time += minutes(1)) {
      if (time < silence_begin_ || time >= silence_end_) day.push_back(Minute(time));
      if (day.size() < 1440) continue;
      if (!store_.Write(day, {})) return false;
      day.clear();
    }
    return store_.Write(day, episodes_);
  }

 private:
  // In the order of their beginnings.
  void PlanEpisodes() {
    const auto plan = [&](EpisodeKind kind, sys_seconds begin, seconds length, Ending ending) {
      Episode& episode = episodes_.emplace_back();
      episode.kind = kind;
      episode.begin = begin;
      episode.end = begin + length;
      episode.ending = ending;
    };
    for (const Outage& outage : kOutages) {
      const sys_seconds begin = LocalTimeOf(now_, outage.days_ago, outage.clock);
      plan(EpisodeKind::kMainsFailure, begin, outage.length,
           outage.way_down ? Ending::kShutdown : Ending::kOver);
      if (!outage.way_down) continue;
      const sys_seconds end = begin + outage.length;
      plan(EpisodeKind::kWayDown, end, kWayDown, Ending::kOver);
      silence_begin_ = end + kWayDown;
      silence_end_ = end + kSilence;
    }
    for (int day = kDays - 3; day > 0; day -= kSelfTestEvery) {
      plan(EpisodeKind::kSelfTest, LocalTimeOf(now_, day, kSelfTestClock), kSelfTest,
           Ending::kOver);
    }
    std::sort(episodes_.begin(), episodes_.end(),
              [](const Episode& a, const Episode& b) { return a.begin < b.begin; });
    for (Episode& episode : episodes_) episode.id = ++last_id_;
  }

  double Noise(double width) {
    // Written out, since the standard's distributions are others everywhere.
    return width * (static_cast<double>(random_()) / 4294967295.0 * 2 - 1);
  }

  Sample Minute(sys_seconds time) {
    const std::tm local = LocalOf(time);
    const double hour = local.tm_hour + local.tm_min / 60.0;
    const double day = std::cos((hour - 15) / 24 * 2 * std::numbers::pi);  // 1 in the afternoon
    const bool weekend = local.tm_wday == 0 || local.tm_wday == 6;
    const bool work = hour >= 8 && hour < 18 && !weekend;
    load_ += ((work ? 46 : 19) + 4 * day - load_) * 0.08 + Noise(0.7);
    drift_ += -drift_ * 0.02 + Noise(0.25);
    const double sag = hour >= 19 && hour < 19.75 ? kSagVolts * std::min(1.0, (hour - 19) * 8) : 0;
    double input = 231 - 2.5 * day + drift_ - sag;

    Episode* outage = nullptr;
    for (Episode& episode : episodes_) {
      const bool lasts = time < episode.end && time + minutes(1) > episode.begin;
      if (episode.kind != EpisodeKind::kSelfTest && lasts) outage = &episode;
    }
    const double full = battery_;
    if (outage) {
      const auto length = std::min(time + minutes(1), outage->end) - std::max(time, outage->begin);
      battery_ -= kDischarge * std::pow(load_, kPeukert) * static_cast<double>(length.count()) / 60;
      input = 0;
    } else {
      battery_ = std::min(100.0, battery_ + kCharge);
    }
    battery_ = std::max(kLow - 2, battery_);
    temperature_ += (24.5 + load_ * 0.07 + 1.5 * day + (outage ? 6 : 0) - temperature_) * 0.02;

    Sample sample{time, kReadings, {}};
    Put(sample, Gauge::kInput, input, outage ? 0 : 0.8 + sag / 15);
    Put(sample, Gauge::kOutput, 230 + Noise(0.2), 0.3);
    Put(sample, Gauge::kLoad, std::max(3.0, load_), 2);
    Put(sample, Gauge::kBattery, battery_, 0);
    Put(sample, Gauge::kFrequency, 50 + Noise(0.04), outage ? 0.1 : 0.05);
    Put(sample, Gauge::kTemperature, temperature_ + Noise(0.05), 0.1);
    sample.values[Gauge::kBattery].most = std::llround(std::max(full, battery_) * 100);
    for (Episode& episode : episodes_) {
      if (time < episode.end && time + minutes(1) > episode.begin) Add(episode, sample);
    }
    return sample;
  }

  static void Put(Sample& sample, Gauge gauge, double mean, double width) {
    const auto hundredths = [](double value) { return std::llround(value * 100); };
    sample.values[gauge] = {hundredths(mean - width), hundredths(mean) * kReadings,
                            hundredths(mean + width)};
  }

  static void Add(Episode& episode, const Sample& sample) {
    const Spread& battery = sample.values[Gauge::kBattery];
    const Spread& load = sample.values[Gauge::kLoad];
    if (!episode.first_battery) episode.first_battery = battery.most;
    episode.lowest_battery =
        std::min(episode.lowest_battery.value_or(battery.least), battery.least);
    episode.highest_load = std::max(episode.highest_load.value_or(load.most), load.most);
    episode.mean_load = load.sum / kReadings;
  }

  HistoryStore& store_;
  sys_seconds now_;
  std::int64_t last_id_;
  std::vector<Episode> episodes_;
  sys_seconds silence_begin_, silence_end_;
  std::mt19937 random_{7};
  double load_ = 20, drift_ = 0, battery_ = 100, temperature_ = 25;  // of the last minute
};

}  // namespace

bool WritePast(HistoryStore& store, sys_seconds now) {
  return Past(store, now).Write();
}

}  // namespace orvane
