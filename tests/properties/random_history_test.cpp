// Months of random weather, users and clocks over the whole program, in virtual time: whatever
// comes, the promises of the protection hold.
//
// ORVANE_SEED gives other histories than the usual ones, ORVANE_DAYS longer ones.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <numeric>
#include <random>
#include <sstream>

#include "app/calendar.h"
#include "properties/life.h"

namespace orvane::test {
namespace {

using std::chrono::days;
using std::chrono::hours;
using std::chrono::minutes;
using std::chrono::seconds;

constexpr unsigned kFirstSeed = 20010216;
constexpr unsigned kHistories = 10;
constexpr unsigned kDays = 3;  // of each history

unsigned FromEnvironment(const char* name, unsigned usual) {
  const char* text = std::getenv(name);
  return text ? static_cast<unsigned>(std::strtoul(text, nullptr, 10)) : usual;
}

class History {
 public:
  explicit History(unsigned seed) : random_(seed) {}

  // Lives one after the other until they have lasted long enough. The first broken rule with what
  // led to it; empty if none was.
  std::string Run(Moment length) {
    while (tally_.time < length) {
      if (std::string broken = RunLife(); !broken.empty()) return broken;
    }
    return {};
  }

  const Tally& Told() const { return tally_; }

 private:
  unsigned Below(unsigned limit) { return static_cast<unsigned>(random_() % limit); }
  bool OneIn(unsigned chances) { return Below(chances) == 0; }
  template <class T>
  T Any(const std::vector<T>& choices) {
    return choices[Below(static_cast<unsigned>(choices.size()))];
  }

  LocalTime AnyTime() {
    const auto part = [this](unsigned limit) { return static_cast<int>(Below(limit)); };
    return {1990 + part(60), 1 + part(12), 1 + part(28), part(24), part(60), part(60)};
  }

  Wishes AnyWishes() {
    Wishes wishes;
    wishes.delay = Any<int>({0, 45, 90, 300, 600, 1800});
    if (wishes.delay == 0 && !OneIn(8)) wishes.delay = 60;
    wishes.low = Any<int>({0, 1, 20, 120, 900});
    wishes.shutdown_minutes = static_cast<int>(Below(11));
    for (bool& dials : wishes.dials) dials = OneIn(2);
    wishes.modem_port = 1 + static_cast<int>(Below(4));
    wishes.language = static_cast<Language>(Below(2));
    if (!OneIn(4)) wishes.number = Any<std::string>({"119", "0,5550100", "1"});
    return wishes;
  }

  std::vector<Appointment> AnySchedule(const LocalTime& start) {
    using What = Appointment::What;
    std::vector<Appointment> schedule;
    for (int day = 1; day <= 7; ++day) {
      if (OneIn(8)) schedule.push_back({What::kSwitchOn, day, AnyTime()});
      if (OneIn(12)) schedule.push_back({What::kSwitchOff, day, AnyTime()});
    }
    // Times near the start of a life, so that they come to pass in it.
    for (const auto& [what, chances] :
         {std::pair{What::kSwitchOn, 2U}, {What::kSwitchOff, 4U}, {What::kSelfTest, 4U}}) {
      if (!OneIn(chances)) continue;
      LocalTime soon = start;
      soon.hour = std::min(start.hour + static_cast<int>(Below(4)), 23);
      soon.minute = static_cast<int>(Below(60));
      schedule.push_back({what, 0, soon});
    }
    return schedule;
  }

  Moment AnyWait() {
    const unsigned what = Below(12);
    if (what == 0) return Moment(Below(3 * 3600 * 1000));
    if (what < 3) return Moment(Below(15 * 60 * 1000));
    if (what == 3) return seconds(1 + Below(30));
    return Moment(1 + Below(90 * 1000));
  }

  std::string RunLife() {
    const LocalTime start = AnyTime();
    Life life(start, AnyWishes(), AnySchedule(start), tally_);
    told_.clear();
    const UpsDialect& dialect = kUpsDialects.at(Below(kUpsDialects.size()));
    life.ups.Do([&](UpsModel& model) { model.Speak(dialect); });
    Tell("a UPS that speaks", dialect.name);
    bad_.fill(false);
    const Moment end = tally_.time + hours(1 + Below(36));
    while (!life.Down() && tally_.time < end && life.Broken().empty()) {
      Happens(life);
      life.Pass(AnyWait());
    }
    // What a program that has gone down must not do any more.
    if (life.Down()) life.Pass(minutes(10));
    life.End();
    if (life.Broken().empty()) return {};
    const std::size_t forgotten = told_.size() - std::min<std::size_t>(told_.size(), 60);
    return std::accumulate(told_.begin() + static_cast<std::ptrdiff_t>(forgotten), told_.end(),
                           life.Broken() + "\nWhat happened before:");
  }

  void Happens(Life& life) {
    constexpr void (History::*kDeeds[])(Life&) = {&History::SetBattery, &History::SetModem,
                                                  &History::SetClock,   &History::SaveSettings,
                                                  &History::UseMenu,    &History::AskForShutdown};
    const unsigned what = Below(20);
    if (what < 13) return Flip(life, what < 5 ? 0 : what - 4);
    if (what < 13 + std::size(kDeeds)) (this->*kDeeds[what - 13])(life);
  }

  void Flip(Life& life, std::size_t what) {
    bool& bad = bad_.at(what);
    const auto ups = [&](void (UpsModel::*set)(bool), bool wrong = true) {
      return [&, set, wrong] { life.ups.Do([&](UpsModel& model) { (model.*set)(bad == wrong); }); };
    };
    const auto plug = [&](FakeSerialPort& port) {
      return [&] {
        port.Unplug();
        if (!bad) port.present = {1, 2, 3, 4};
      };
    };
    const struct {
      const char* name;
      unsigned chances;  // that it comes; it heals as soon as it is met again
      std::function<void()> set;
    } things[] = {
        {"mains failure", 1, ups(&UpsModel::Mains, false)},
        {"UPS fault", 2, ups(&UpsModel::Fault)},
        {"bypass", 2, ups(&UpsModel::Bypass)},
        {"silence", 2, ups(&UpsModel::Mute)},
        {"noise", 2, ups(&UpsModel::Noise)},
        {"pieces", 1, ups(&UpsModel::Split)},
        {"no UPS port", 2, plug(life.ups_port)},
        {"no modem port", 2, plug(life.modem_port)},
        {"full disk", 4, [&] { life.disk.refuse_writes = bad; }},
    };
    if (!bad && !OneIn(things[what].chances)) return;
    bad = !bad;
    Tell(things[what].name, bad ? "on" : "off");
    things[what].set();
  }

  void SetBattery(Life& life) {
    const double percent = Below(101);
    const double load = Below(130);
    Tell("battery", percent, "load", load);
    life.ups.Do([&](UpsModel& model) {
      model.Battery(percent);
      model.Load(load);
    });
  }

  void SetModem(Life& life) {
    const auto answer =
        Any<DialAnswer>({DialAnswer::kOk, DialAnswer::kBusy, DialAnswer::kBusyAlone,
                         DialAnswer::kNoCarrier, DialAnswer::kNoDialtone, DialAnswer::kNone});
    Tell("modem answers", static_cast<int>(answer));
    life.modem.Do([&](ModemModel& model) {
      model.manners.answer = answer;
      model.manners.delay = Moment(Below(60 * 1000));
      model.manners.piece = Below(4);
    });
  }

  void SetClock(Life& life) {
    if (OneIn(2)) {
      const Moment step = Moment(Below(OneIn(4) ? 8 * 3600 * 1000 : 20 * 1000));
      Tell("a sleep of", step.count(), "ms");
      return life.Sleep(step);
    }
    const LocalTime to = AnyTime();
    Tell("clock set to", DateText(to), TimeText(to));
    life.time.SetWall(to);
  }

  void SaveSettings(Life& life) {
    const Wishes wishes = AnyWishes();
    const bool change_port = OneIn(4);
    Tell("settings saved: delay", wishes.delay, "low", wishes.low, "calls for mains",
         wishes.dials[Fault::kMains], change_port ? "on another port" : "");
    life.Save(wishes, change_port);
  }

  void UseMenu(Life& life) {
    constexpr void (Engine::*kEntries[])() = {&Engine::ToggleBeeper, &Engine::TestFor10Seconds,
                                              &Engine::TestToLow, &Engine::CancelTest};
    constexpr const char* kNames[] = {"Q\r",  "T\r",         "TL\r",
                                      "CT\r", "log cleared", "schedule saved"};
    const unsigned what = Below(6);
    Tell("menu:", kNames[what]);
    if (what < 4) return life.Order(kEntries[what], kNames[what]);
    what == 4 ? life.ClearLog() : life.Save(AnySchedule(life.time.Now()));
  }

  void AskForShutdown(Life& life) {
    const bool yes = OneIn(10);
    const Moment hesitation = Moment(Below(OneIn(4) ? 1000 * 1000 : 5 * 1000));
    Tell("asked for a shutdown, and then", yes ? "yes" : "no");
    life.AskForShutdown(hesitation, yes);
  }

  template <class... Parts>
  void Tell(const Parts&... parts) {
    std::ostringstream event;
    event << "\n  " << tally_.time.count() << " ms:";
    ((event << ' ' << parts), ...);
    told_.push_back(event.str());
  }

  std::mt19937 random_;
  Tally tally_;
  std::array<bool, 9> bad_{};
  std::vector<std::string> told_;
};

class RandomHistory : public testing::TestWithParam<unsigned> {};

TEST_P(RandomHistory, KeepsEveryPromise) {
  const unsigned seed = FromEnvironment("ORVANE_SEED", kFirstSeed) + GetParam();
  History history(seed);
  const std::string broken = history.Run(days(FromEnvironment("ORVANE_DAYS", kDays)));
  EXPECT_EQ(broken, "") << "as history 0 with ORVANE_SEED=" << seed;
  // Histories in which nothing happens would promise nothing.
  const auto& [time, lives, counts, episodes, losses, calls, reloads] = history.Told();
  for (const int happened : {counts, losses, calls, reloads}) EXPECT_GT(happened, 0);
  EXPECT_GT(episodes, lives);
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomHistory, testing::Range(0U, kHistories));

}  // namespace
}  // namespace orvane::test
