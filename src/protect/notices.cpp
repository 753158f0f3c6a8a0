#include "protect/notices.h"

#include <cstdlib>
#include <string>
#include <utility>

#include "app/calendar.h"
#include "app/settings.h"

namespace orvane {
namespace {

constexpr int kDay = 24 * 60 * 60;
// Half a minute, the poll that lost the link included.
constexpr int kSilentPolls = 16;
// By how much the end of a count may drift, as seconds are rounded, before it is told anew.
constexpr int kDrift = 1;

bool IsRed(const Label& line) {
  return line.ForeColor() == kRed;
}

}  // namespace

void Notices::Withdraw() {
  for (std::size_t i = 0; i < kNotices; ++i) {
    seams_.host.WithdrawNotification(static_cast<Notice>(i));
  }
  mains_failed_ = mains_shown_ = false;
  shown_end_.reset();
  standing_ = {};
  silent_polls_ = 0;
}

void Notices::OnPoll() {
  silent_polls_ = IsRed(panel_.link) ? silent_polls_ + 1 : 0;
  if (silent_polls_ == kSilentPolls) {
    Show(Notice::kLinkLost, Message::kSilentTitle, state_.Text(Message::kSilentBody), false, true);
  }
  Update();
}

void Notices::Update() {
  if (!IsRed(panel_.link)) {
    silent_polls_ = 0;
    seams_.host.WithdrawNotification(Notice::kLinkLost);
    UpdateFault(panel_.battery, Notice::kBatteryLow, Message::kBatteryLowTitle,
                Message::kBatteryLowBody);
    UpdateFault(panel_.ups, Notice::kUpsFault, Message::kUpsFaultTitle, Message::kUpsFaultBody);
  }
  UpdateMains();
}

void Notices::UpdateMains() {
  const bool failed = IsRed(panel_.mains);
  if (!failed) {
    if (std::exchange(mains_failed_, false)) {
      Show(Notice::kMains, Message::kMainsBackTitle, state_.Text(Message::kMainsBackBody), false,
           false);
    }
    mains_shown_ = false;
    return;
  }
  mains_failed_ = true;
  if (alert_.Showing()) {
    if (std::exchange(mains_shown_, false)) seams_.host.WithdrawNotification(Notice::kMains);
    return;
  }
  const std::optional<int> end = EndOfCount();
  const bool same =
      end.has_value() == shown_end_.has_value() && (!end || std::abs(*end - *shown_end_) <= kDrift);
  if (mains_shown_ && same) return;
  mains_shown_ = true;
  shown_end_ = end;
  if (!end) {
    return Show(Notice::kMains, Message::kMainsFailedTitle, state_.Text(Message::kCountStandsStill),
                true, true);
  }
  const int second = *end % kDay;
  std::string body(state_.Text(Message::kGoesDownBefore));
  body += TimeText({.hour = second / 3600, .minute = second / 60 % 60, .second = second % 60});
  body += state_.Text(Message::kGoesDownBehind);
  Show(Notice::kMains, Message::kMainsFailedTitle, body, true, true);
}

void Notices::UpdateFault(const Label& line, Notice notice, Message title, Message body) {
  const bool set = IsRed(line);
  if (set == std::exchange(standing_[notice], set)) return;
  if (set) {
    Show(notice, title, state_.Text(body), notice == Notice::kUpsFault, false);
  } else {
    seams_.host.WithdrawNotification(notice);
  }
}

// In seconds since midnight, beyond a day for the next one. Nothing while the count stands still.
std::optional<int> Notices::EndOfCount() const {
  if (!seams_.timers.countdown_timer.Enabled()) return std::nullopt;
  const bool begun = state_.Main.AlertSeconds > 0;
  const int left = begun ? state_.ShutdownCountdown : MainsFailureDelay(state_);
  const LocalTime now = seams_.clock.Now();
  return now.hour * 3600 + now.minute * 60 + now.second + left;
}

void Notices::Show(Notice notice, Message title, std::string_view body, bool urgent, bool stays) {
  seams_.host.ShowNotification(notice,
                               {std::string(state_.Text(title)), std::string(body), urgent, stays});
}

Notification WayDownNotification(const State& state) {
  return {std::string(state.Text(Message::kWayDownTitle)),
          std::string(state.Text(Message::kWayDownBody)), true, true};
}

}  // namespace orvane
