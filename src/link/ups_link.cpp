#include "link/ups_link.h"

#include <utility>

#include "app/captions.h"
#include "app/gauges.h"
#include "app/message_numbers.h"
#include "app/settings.h"
#include "link/commands.h"

namespace orvane {
namespace {

constexpr int kLastPort = 4;
constexpr int kUnansweredPolls = 3;

// A flood leaves no more than this behind for good.
constexpr std::size_t kKeptCapacity = 4096;

// Where the needles go when the link is lost; the captions all go to 0.
constexpr std::int16_t kLostGauges[kGauges] = {200, 200, 0, 0, 30, 0};

// Every reply ends with it.
constexpr char kLineEnd = '\r';

void Forget(std::string& text) {
  text.clear();
  if (text.capacity() > kKeptCapacity) text.shrink_to_fit();
}

bool IsRed(const Label& label) {
  return label.ForeColor() == kRed && label.Visible();
}

}  // namespace

UpsLink::UpsLink(State& state, Panel& panel, Journals& journals, const Seams& seams)
    : state_(state),
      panel_(panel),
      seams_(seams),
      mirror_(panel),
      evaluation_(state, panel, journals, seams),
      decoder_(state, panel, mirror_, evaluation_) {}

void UpsLink::Attach() {
  panel_.lblConnect.Change = [this] { lblConnect_Change(); };
  for (Label& value : panel_.Label2) value.Change = [this] { mirror_.Label2_Change(); };
  seams_.MSComm1.OnComm = [this] { MSComm1_OnComm(); };
}

void UpsLink::OpenPort() {
  suspended_ = false;
  // The line settings are the control's design.
  static_cast<void>(seams_.MSComm1.Settings("2400,N,8,1"));
  if (const int port = state_.Settings[kUpsPort]) {
    OpenFixedPort(port);
  } else {
    SearchPort();
  }
}

bool UpsLink::Open(int number) {
  SerialPort& port = seams_.MSComm1;
  if (!port.CommPort(number) || !port.PortOpen(true)) return false;
  state_.Main.PortWasOpen = true;
  panel_.Label14.Caption(PortLine(state_, number));
  return true;
}

void UpsLink::OpenFixedPort(int number) {
  if (Open(number)) return;
  seams_.timers.Timer1.Enabled(false);
  seams_.timers.Timer2.Enabled(false);
  seams_.dialogs.Exclamation(state_.Message(message::kFixedPortBox),
                             state_.Message(message::kWarning));
  panel_.Label14.Caption(state_.Message(message::kFixedPortLine));
}

void UpsLink::SearchPort() {
  std::int16_t& attempt = state_.Main.PortTry;
  for (attempt = 0;; ++attempt) {
    const int number = attempt + 1;
    if (Open(number)) return;
    if (number == kLastPort) break;
  }
  seams_.timers.Timer1.Enabled(false);
  seams_.dialogs.Exclamation(state_.Message(message::kNoPortBox),
                             state_.Message(message::kWarning));
  panel_.Label14.Caption(state_.Message(message::kNoPortLine));
}

void UpsLink::Timer1_Timer() {
  MainFormState& form = state_.Main;
  ++form.PollsSent;
  Forget(form.RxText);
  // A lost port is asked for again with every poll; until it is back the watchdog tells the user.
  SerialPort& port = seams_.MSComm1;
  if (port.PortOpen() || port.PortOpen(true)) static_cast<void>(SendCommand(port, kStatusQuery));
  if (form.PollsSent - form.PollsAnswered > kUnansweredPolls) LinkLoss();
  RefreshWarningLine();
}

void UpsLink::Suspend() {
  Timer& poll = seams_.timers.Timer1;
  suspended_ = suspended_ || poll.Enabled();
  poll.Enabled(false);
  static_cast<void>(seams_.MSComm1.PortOpen(false));
}

void UpsLink::Resume() {
  if (!std::exchange(suspended_, false)) return;
  // A device that takes its time to come back is asked for again with every poll.
  static_cast<void>(seams_.MSComm1.PortOpen(true));
  seams_.timers.Timer1.Enabled(true);
}

void UpsLink::LinkLoss() {
  panel_.lblConnect.Caption(state_.Message(message::kNotConnected));
  panel_.lblConnect.ForeColor(kRed);
  for (Label& field : panel_.Label7) field.Caption("UnKnown");
  for (Label* line : {&panel_.lblAc, &panel_.lblBatt, &panel_.lblBattIn, &panel_.lblUps}) {
    line->Caption("");
  }
  state_.Main.PollsSent = 0;
  {
    const ValueMirror::Batch batch(mirror_);
    for (std::size_t i = 0; i < kGauges; ++i) {
      SetGauge(state_.Main, panel_, static_cast<int>(i), kLostGauges[i]);
      panel_.Label2[i].Caption("0");
    }
  }
  seams_.timers.Timer2.Enabled(false);
  panel_.Label13.Caption(state_.Message(message::kReady));
}

// By colour, not by caption: a warning stays while the link is down.
void UpsLink::RefreshWarningLine() {
  Label& warning = panel_.lblAlert[1];
  if (IsRed(panel_.lblBattIn)) {
    warning.Caption(state_.Message(message::kByPassWarning));
    warning.Visible(true);
  } else if (IsRed(panel_.lblAc)) {
    warning.Visible(true);
    warning.Caption(state_.Message(message::kAcFailWarning));
  } else {
    warning.Visible(false);
  }
}

void UpsLink::MSComm1_OnComm() {
  if (seams_.MSComm1.CommEvent() != kCommEventReceive) return;
  seams_.MSComm1.Input(received_);
  std::string& text = state_.Main.RxText;
  for (std::size_t begin = 0; begin < received_.size();) {
    const std::size_t line_end = received_.find(kLineEnd, begin);
    const bool whole = line_end != std::string::npos;
    const std::size_t end = whole ? line_end + 1 : received_.size();
    text.append(received_, begin, end - begin);
    decoder_.Decode();
    // What is whole and no reply belongs to none that follows.
    if (whole) text.clear();
    begin = end;
  }
  Forget(received_);
}

void UpsLink::lblConnect_Change() {
  if (panel_.lblConnect.ForeColor() == kRed) {
    panel_.lblAlert[1].Visible(false);
    panel_.lblAlert[2].Visible(false);
  }
  // On a port that is not open the query is lost, and nobody needs to know.
  static_cast<void>(SendCommand(seams_.MSComm1, kInformationQuery));
}

}  // namespace orvane
