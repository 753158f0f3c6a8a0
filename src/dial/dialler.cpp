#include "dial/dialler.h"

#include <string_view>

#include "app/settings.h"
#include "platform/text.h"

namespace orvane {
namespace {

constexpr int kPassInterval = 20;  // milliseconds
constexpr int kPassLimit = 2500;   // 50 s for the modem to answer
constexpr int kAttempts = 4;
constexpr int kRingSeconds = 20;   // to be exceeded
constexpr int kHangUpSeconds = 2;  // to be exceeded

constexpr std::string_view kLineSettings = "9600,N,8,1";
constexpr std::string_view kHangUp = "ATH\r";

// A flood leaves no more than this behind for good.
constexpr std::size_t kKeptCapacity = 4096;

constexpr PerFault<Label Panel::*> kFaultLines = {{&Panel::mains, &Panel::battery, &Panel::ups}};

}  // namespace

void Dialler::Attach() {
  seams_.modem_timer.Enabled(false);
  seams_.modem_timer.Interval(kPassInterval);
  seams_.modem_timer.Tick = [this] { Pass(); };
  seams_.timers.dial_timer.Tick = [this] { OnDialDelay(); };
}

void Dialler::OnDialDelay() {
  if (Running()) return;
  const auto reason = state_.Main.DialReason;
  if (reason && !state_.IsNormal(panel_.*kFaultLines[*reason])) Dial();
  if (!Running()) seams_.timers.dial_timer.Enabled(false);
}

void Dialler::Dial() {
  const std::string_view number = Trimmed(state_.PhoneCode);
  if (number.empty()) return;
  dial_text_ = "ATDT";
  dial_text_ += number;
  dial_text_ += ";\r";
  if (!OpenPort()) {
    Show(Message::kModemPortInvalid);
    return;
  }
  go_on_ = true;
  attempts_ = 0;
  seams_.modem_timer.Enabled(true);
  BeginAttempt();
}

void Dialler::Stop() {
  if (!Running()) return;
  phase_ = Phase::kIdle;
  seams_.modem_timer.Enabled(false);
  seams_.timers.dial_timer.Enabled(false);
}

void Dialler::Show(Message message) {
  panel_.status_line.Caption(state_.Text(message));
}

// Only the opening counts. A slot that names no port leaves nothing to open: the port that the
// control last held may have anything on it.
bool Dialler::OpenPort() {
  SerialPort& port = seams_.modem_port;
  const int number = state_.Settings[kModemPort];
  port.Close();
  static_cast<void>(port.Configure(kLineSettings));
  static_cast<void>(port.Select(number));
  return port.Number() == number && port.Open();
}

void Dialler::BeginAttempt() {
  phase_ = Phase::kWaiting;
  passes_ = 0;
  reply_.Clear();
  // A write that fails shows as a modem that does not answer.
  static_cast<void>(seams_.modem_port.Write(dial_text_));
}

void Dialler::Pass() {
  if (!seams_.timers.dial_timer.Enabled()) return Stop();
  switch (phase_) {
    case Phase::kIdle:
      break;
    case Phase::kWaiting:
      Look();
      break;
    case Phase::kRinging:
      // Nothing that comes now matters, and it must not pile up.
      seams_.modem_port.Discard();
      if (SecondsField() > kRingSeconds) {
        Show(Message::kHangUp);
        go_on_ = false;
        HangUp();
      }
      break;
    case Phase::kHangingUp:
      seams_.modem_port.Discard();
      if (SecondsField() > kHangUpSeconds) EndAttempt();
      break;
  }
}

void Dialler::Look() {
  SerialPort& port = seams_.modem_port;
  if (port.Waiting() > 0) {
    arrived_.clear();
    port.Read(arrived_);
    reply_.Append(arrived_);
    if (arrived_.capacity() > kKeptCapacity) arrived_ = {};
    panel_.status_line.Caption(reply_.Shown());
    if (reply_.Contains(ReplyBuffer::kOk)) {
      seams_.host.Beep();
      if (!reply_.Contains(ReplyBuffer::kBusy)) return Ring();
      Show(Message::kBusy);
      return HangUp();
    }
    if (reply_.Contains(ReplyBuffer::kNoCarrier)) {
      Show(Message::kVoidNumber);
      return HangUp();
    }
    if (reply_.Contains(ReplyBuffer::kNoDialtone)) {
      Show(Message::kNoDialTone);
      return HangUp();
    }
  }
  if (++passes_ > kPassLimit) {
    Show(Message::kNoModem);
    Stop();
  }
}

void Dialler::Ring() {
  Show(Message::kRinging);
  Mark();
  phase_ = Phase::kRinging;
}

void Dialler::HangUp() {
  static_cast<void>(seams_.modem_port.Write(kHangUp));
  Mark();
  phase_ = Phase::kHangingUp;
}

void Dialler::EndAttempt() {
  ++attempts_;
  panel_.status_line.Caption(std::string(state_.Text(Message::kDialTimes)) +
                             std::to_string(attempts_));
  if (attempts_ < kAttempts && go_on_) return BeginAttempt();
  Show(go_on_ ? Message::kGiveUpDialling : Message::kCallSucceeded);
  seams_.modem_port.Close();
  Stop();
}

void Dialler::Mark() {
  mark_ = seen_ = seams_.clock.SystemSeconds();
}

// The seconds field, 0 to 59, of the time since the mark. A clock that is set back takes nothing
// from what it had counted: the wait goes on from there.
int Dialler::SecondsField() {
  const std::chrono::sys_seconds now = seams_.clock.SystemSeconds();
  if (now < seen_) mark_ -= seen_ - now;
  seen_ = now;
  return static_cast<int>((now - mark_).count() % 60);
}

}  // namespace orvane
