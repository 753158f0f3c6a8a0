#include "history/recorder.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace orvane {
namespace {

using std::chrono::floor;
using std::chrono::minutes;
using std::chrono::seconds;

// Between two looks a longer time, or one that runs backwards, is a clock that was set or a
// computer that slept: nobody saw what lies between.
constexpr seconds kLongestBlink{30};

// What a store that refuses can cost of memory.
constexpr std::size_t kKeptForLater = 120;

// The figure at the front of a caption in hundredths; 0 without one.
std::int64_t Hundredths(const std::string& caption) {
  double value = 0;
  std::from_chars(caption.data(), caption.data() + caption.size(), value);
  constexpr double kLimit = 1e6;
  return std::llround(std::clamp(std::isfinite(value) ? value : 0, -kLimit, kLimit) * 100);
}

bool IsRed(const Label& label) {
  return label.ForeColor() == kRed && !label.Caption().empty();
}

// No UPS tests itself then.
bool HindersTest(const Panel& panel) {
  return IsRed(panel.mains) || IsRed(panel.battery) || IsRed(panel.bypass);
}

void KeepNewest(auto& list) {
  if (list.size() <= kKeptForLater) return;
  list.erase(list.begin(), list.end() - static_cast<std::ptrdiff_t>(kKeptForLater));
}

}  // namespace

// Episodes that an earlier run left open end where it saw them last.
void Recorder::Start() {
  started_ = true;
  last_id_ = store_->LastEpisode();
  for (Episode& episode : store_->Episodes(sys_seconds::max() - seconds(1), sys_seconds::max())) {
    if (episode.ending != Ending::kNotYet) continue;
    episode.ending = Ending::kUnknown;
    Put(episode);
  }
  if (due_) Write();
}

void Recorder::Look() {
  if (!store_) return;
  if (!started_) Start();
  const sys_seconds now = clock_.SystemSeconds();
  if (last_look_ && (now < *last_look_ || now - *last_look_ > kLongestBlink)) {
    CloseAll(*last_look_, Ending::kUnknown);
  }
  last_look_ = now;
  if (minute_ && floor<minutes>(now) != minute_->begin) CloseMinute();
  TakeReading(now);
  FollowStates(now);
  if (due_) Write();
}

// An answer has come since the last look, and the panel shows its values.
void Recorder::TakeReading(sys_seconds now) {
  const MainFormState& form = state_.Main;
  const bool fresh = form.PollsAnswered != answered_ && form.PollsAnswered <= form.PollsSent;
  answered_ = form.PollsAnswered;
  if (!fresh || panel_.link.ForeColor() == kRed) return;
  PerGauge<std::int64_t> reading;
  for (const Gauge gauge : kGauges) reading[gauge] = Hundredths(panel_.read_outs[gauge].Caption());
  if (!minute_) minute_ = Sample{floor<minutes>(now), 0, {}};
  minute_->Add(reading);
  for (auto& open : open_) {
    if (!open) continue;
    Episode& episode = open->episode;
    const std::int64_t battery = reading[Gauge::kBattery];
    const std::int64_t load = reading[Gauge::kLoad];
    if (!episode.first_battery) episode.first_battery = battery;
    episode.lowest_battery = std::min(episode.lowest_battery.value_or(battery), battery);
    episode.highest_load = std::max(episode.highest_load.value_or(load), load);
    open->load_sum += load;
    episode.mean_load = open->load_sum / ++open->load_readings;
  }
}

void Recorder::FollowStates(sys_seconds now) {
  const bool linked = panel_.link.ForeColor() != kRed;
  if (!linked) {
    // What the UPS is doing is not known from here on.
    for (const EpisodeKind kind :
         {EpisodeKind::kMainsFailure, EpisodeKind::kBatteryLow, EpisodeKind::kUpsFault,
          EpisodeKind::kBypass, EpisodeKind::kOverload, EpisodeKind::kSelfTest}) {
      Close(kind, now, Ending::kUnknown);
    }
    CloseMinute();
  } else {
    Follow(EpisodeKind::kMainsFailure, IsRed(panel_.mains), now);
    Follow(EpisodeKind::kBatteryLow, IsRed(panel_.battery), now);
    Follow(EpisodeKind::kUpsFault, IsRed(panel_.ups), now);
    Follow(EpisodeKind::kBypass, IsRed(panel_.bypass), now);
    Follow(EpisodeKind::kOverload, panel_.overload_warning.Visible(), now);
    FollowSelfTest(now);
  }
  // Before the first answer nothing is lost.
  linked_once_ = linked_once_ || linked;
  Follow(EpisodeKind::kLinkLoss, !linked && linked_once_, now);
}

// What the UPS tells goes before what was ordered of it.
void Recorder::FollowSelfTest(sys_seconds now) {
  const bool tells = state_.Main.Data.test_bit == '1';
  self_test_told_ = tells || (self_test_told_ && open_[EpisodeKind::kSelfTest]);
  const bool ordered = !self_test_told_ && open_[EpisodeKind::kSelfTest] && now < self_test_end_ &&
                       !HindersTest(panel_);
  Follow(EpisodeKind::kSelfTest, tells || ordered, now);
}

void Recorder::Follow(EpisodeKind kind, bool lasts, sys_seconds now) {
  if (lasts && !open_[kind]) Begin(kind, now);
  if (!lasts) Close(kind, now, Ending::kOver);
}

void Recorder::Begin(EpisodeKind kind, sys_seconds now) {
  OpenEpisode& open = open_[kind].emplace();
  open.episode.id = ++last_id_;
  open.episode.kind = kind;
  open.episode.begin = open.episode.end = now;
  if (kind != EpisodeKind::kLinkLoss && panel_.link.ForeColor() != kRed) {
    const std::int64_t battery = Hundredths(panel_.read_outs[Gauge::kBattery].Caption());
    const std::int64_t load = Hundredths(panel_.read_outs[Gauge::kLoad].Caption());
    open.episode.first_battery = open.episode.lowest_battery = battery;
    open.episode.highest_load = open.episode.mean_load = load;
    open.load_sum = load;
    open.load_readings = 1;
  }
  Put(open.episode);
}

void Recorder::Close(EpisodeKind kind, sys_seconds end, Ending ending) {
  std::optional<OpenEpisode>& open = open_[kind];
  if (!open) return;
  open->episode.end = std::max(open->episode.begin, end);
  open->episode.ending = ending;
  Put(open->episode);
  open.reset();
}

void Recorder::CloseAll(sys_seconds end, Ending ending) {
  for (std::size_t i = 0; i < kEpisodeKinds; ++i) Close(static_cast<EpisodeKind>(i), end, ending);
}

// With what lasts as far as it has come: the computer may die of it.
void Recorder::CloseMinute() {
  if (!minute_) return;
  minutes_.push_back(*minute_);
  minute_.reset();
  due_ = true;
  for (auto& open : open_) {
    if (!open) continue;
    open->episode.end = std::max(open->episode.begin, last_look_.value_or(open->episode.begin));
    Put(open->episode);
  }
}

void Recorder::Put(const Episode& episode) {
  std::erase_if(episodes_, [&](const Episode& older) { return older.id == episode.id; });
  episodes_.push_back(episode);
  due_ = true;
}

void Recorder::BeginSelfTest(std::chrono::seconds at_most) {
  if (!started_ || panel_.link.ForeColor() == kRed || HindersTest(panel_)) return;
  const sys_seconds now = clock_.SystemSeconds();
  self_test_end_ = now + at_most;
  if (open_[EpisodeKind::kSelfTest]) return;
  Begin(EpisodeKind::kSelfTest, now);
  Write();
}

void Recorder::EndSelfTest() {
  if (!started_ || self_test_told_) return;
  Close(EpisodeKind::kSelfTest, clock_.SystemSeconds(), Ending::kOver);
  if (due_) Write();
}

void Recorder::BeginWayDown() {
  if (!started_) return;
  const sys_seconds now = clock_.SystemSeconds();
  CloseAll(now, Ending::kShutdown);
  CloseMinute();
  Begin(EpisodeKind::kWayDown, now);
  Write();
}

void Recorder::End() {
  if (!started_) return;
  const sys_seconds now = clock_.SystemSeconds();
  Close(EpisodeKind::kWayDown, now, Ending::kOver);
  CloseAll(now, Ending::kUnknown);
  CloseMinute();
  if (due_) Write();
  last_look_.reset();
  self_test_told_ = false;
  answered_ = 0;
  linked_once_ = false;
}

// What the store refuses waits for the next minute.
void Recorder::Write() {
  due_ = false;
  if (store_->Write(minutes_, episodes_)) {
    minutes_.clear();
    episodes_.clear();
    return;
  }
  KeepNewest(minutes_);
  KeepNewest(episodes_);
}

}  // namespace orvane
