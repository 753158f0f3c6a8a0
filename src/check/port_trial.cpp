#include "check/port_trial.h"

#include <string_view>
#include <utility>

#include "app/settings.h"
#include "link/commands.h"
#include "link/reply_decoder.h"

namespace orvane {
namespace {

constexpr int kLastPort = 4;
constexpr int kQuestions = 3;
constexpr int kPause = 1200;  // milliseconds
constexpr std::size_t kMostReceived = 4096;

}  // namespace

void PortTrial::Begin(std::function<void()> on_done) {
  on_done_ = std::move(on_done);
  const int chosen = state_.Settings[kUpsPort];
  next_ = chosen;  // 0, a search, is the number of no port
  last_ = chosen == 0 ? kLastPort : chosen;
  static_cast<void>(port_.Configure("2400,N,8,1"));
  port_.OnReceive = [this] { OnReceive(); };
  timer_.Interval(kPause);
  timer_.Tick = [this] { Ask(); };
  TryNext();
}

void PortTrial::TryNext() {
  port_.Close();
  const bool search = state_.Settings[kUpsPort] == 0;
  const bool calls = state_.Settings[kDialConditions] != 0;
  while (next_ <= last_) {
    const int number = next_++;
    if (search && calls && number == state_.Settings[kModemPort]) continue;
    if (!port_.Select(number) || !port_.Open()) continue;
    opened_ = number;
    asked_ = 0;
    received_.clear();
    port_.Notify(true);
    timer_.Enabled(true);
    return Ask();
  }
  End();
}

void PortTrial::Ask() {
  if (asked_++ == kQuestions) return TryNext();
  static_cast<void>(SendCommand(port_, kStatusQuery));
}

void PortTrial::OnReceive() {
  port_.Read(received_);
  for (std::size_t end = received_.find('\r'); end != std::string::npos;
       end = received_.find('\r')) {
    answered_ = answered_ || IsStatusReply(std::string_view(received_).substr(0, end + 1));
    received_.erase(0, end + 1);
  }
  if (received_.size() > kMostReceived) received_.clear();
  if (answered_) End();
}

void PortTrial::End() {
  timer_.Enabled(false);
  port_.Notify(false);
  port_.Close();
  if (const auto on_done = std::exchange(on_done_, nullptr)) on_done();
}

}  // namespace orvane
