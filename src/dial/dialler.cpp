#include "dial/dialler.h"

#include <string_view>

#include "app/message_numbers.h"
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

// The state line of the fault that armed the dialler; none before the first.
const Label* FaultLine(const Panel& panel, int reason) {
  switch (reason) {
    case kAcFail:
      return &panel.lblAc;
    case kBatteryLow:
      return &panel.lblBatt;
    case kUpsFail:
      return &panel.lblUps;
    default:
      return nullptr;
  }
}

}  // namespace

void Dialler::Attach() {
  seams_.dial_pass.Enabled(false);
  seams_.dial_pass.Interval(kPassInterval);
  seams_.dial_pass.Tick = [this] { Pass(); };
  seams_.timers.TimerDial.Tick = [this] { TimerDial_Timer(); };
}

void Dialler::TimerDial_Timer() {
  if (Running()) return;
  const Label* fault = FaultLine(panel_, state_.Main.DialReason);
  if (fault && !state_.IsNormal(*fault)) Dial();
  if (!Running()) seams_.timers.TimerDial.Enabled(false);
}

void Dialler::Dial() {
  const std::string_view number = Trimmed(state_.PhoneCode);
  if (number.empty()) return;
  dial_text_ = "ATDT";
  dial_text_ += number;
  dial_text_ += ";\r";
  if (!OpenPort()) {
    Show(message::kModemPortInvalid);
    return;
  }
  go_on_ = true;
  attempts_ = 0;
  seams_.dial_pass.Enabled(true);
  BeginAttempt();
}

void Dialler::Stop() {
  if (!Running()) return;
  phase_ = Phase::kIdle;
  seams_.dial_pass.Enabled(false);
  seams_.timers.TimerDial.Enabled(false);
}

void Dialler::Show(int message) {
  panel_.Label13.Caption(state_.Message(message));
}

// Only the opening counts. A slot that names no port leaves nothing to open: the port that the
// control last held may have anything on it.
bool Dialler::OpenPort() {
  SerialPort& port = seams_.MSComm2;
  const int number = state_.Settings[kModemPort];
  static_cast<void>(port.PortOpen(false));
  static_cast<void>(port.Settings(kLineSettings));
  static_cast<void>(port.CommPort(number));
  return port.CommPort() == number && port.PortOpen(true);
}

void Dialler::BeginAttempt() {
  phase_ = Phase::kWaiting;
  passes_ = 0;
  reply_.Clear();
  seams_.MSComm2.ClearInBuffer();
  // A write that fails shows as a modem that does not answer.
  static_cast<void>(seams_.MSComm2.Output(dial_text_));
}

void Dialler::Pass() {
  if (!seams_.timers.TimerDial.Enabled()) return Stop();
  switch (phase_) {
    case Phase::kIdle:
      break;
    case Phase::kWaiting:
      Look();
      break;
    case Phase::kRinging:
      // Nothing that comes now matters, and it must not pile up.
      seams_.MSComm2.ClearInBuffer();
      if (SecondsField() > kRingSeconds) {
        Show(message::kHangUp);
        go_on_ = false;
        HangUp();
      }
      break;
    case Phase::kHangingUp:
      seams_.MSComm2.ClearInBuffer();
      if (SecondsField() > kHangUpSeconds) EndAttempt();
      break;
  }
}

void Dialler::Look() {
  SerialPort& port = seams_.MSComm2;
  if (port.InBufferCount() > 0) {
    arrived_.clear();
    port.Input(arrived_);
    reply_.Append(arrived_);
    if (arrived_.capacity() > kKeptCapacity) arrived_ = {};
    panel_.Label13.Caption(reply_.Shown());
    if (reply_.Contains(ReplyBuffer::kOk)) {
      seams_.host.Beep();
      if (!reply_.Contains(ReplyBuffer::kBusy)) return Ring();
      Show(message::kBusy);
      return HangUp();
    }
    if (reply_.Contains(ReplyBuffer::kNoCarrier)) {
      Show(message::kVoidNumber);
      return HangUp();
    }
    if (reply_.Contains(ReplyBuffer::kNoDialtone)) {
      Show(message::kNoDialTone);
      return HangUp();
    }
  }
  if (++passes_ > kPassLimit) {
    Show(message::kNoModem);
    Stop();
  }
}

void Dialler::Ring() {
  Show(message::kRinging);
  Mark();
  phase_ = Phase::kRinging;
}

void Dialler::HangUp() {
  static_cast<void>(seams_.MSComm2.Output(kHangUp));
  Mark();
  phase_ = Phase::kHangingUp;
}

void Dialler::EndAttempt() {
  ++attempts_;
  panel_.Label13.Caption(std::string(state_.Message(message::kDialTimes)) +
                         std::to_string(attempts_));
  if (attempts_ < kAttempts && go_on_) return BeginAttempt();
  Show(go_on_ ? message::kGiveUpDialling : message::kCallSucceeded);
  static_cast<void>(seams_.MSComm2.PortOpen(false));
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
