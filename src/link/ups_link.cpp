#include "link/ups_link.h"

#include <utility>

#include "app/captions.h"
#include "app/gauges.h"
#include "app/settings.h"
#include "link/commands.h"

namespace orvane {
namespace {

constexpr int kLastPort = 4;
constexpr int kUnansweredPolls = 3;

// Polls on a port of the search before it makes way.
constexpr int kPollsToFind = 4;
// Polls behind the rise of the link with which the ratings and the name are asked for.
constexpr int kRatingPoll = 2;
constexpr int kNamePoll = 3;

// A flood leaves no more than this behind for good.
constexpr std::size_t kKeptCapacity = 4096;

// Where the needles go when the link is lost; the read-outs all go to 0.
constexpr PerGauge<std::int16_t> kLostGauges = {{200, 200, 0, 0, 30, 0}};

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
  panel_.link.Change = [this] { OnLinkChange(); };
  for (Label& value : panel_.read_outs) value.Change = [this] { mirror_.OnReadOutChange(); };
  seams_.ups_port.OnReceive = [this] { OnReceive(); };
}

void UpsLink::OpenPort() {
  suspended_ = false;
  missing_ = false;
  // The line settings are the control's design.
  static_cast<void>(seams_.ups_port.Configure("2400,N,8,1"));
  if (OpenChosen()) return;
  if (state_.Settings[kUpsPort] != 0) {
    seams_.timers.countdown_timer.Enabled(false);
    MissPort(Message::kFixedPortBox, Message::kFixedPortLine);
  } else {
    MissPort(Message::kNoPortBox, Message::kNoPortLine);
  }
}

bool UpsLink::OpenChosen() {
  const int port = state_.Settings[kUpsPort];
  return port == 0 ? SearchPort() : Open(port);
}

void UpsLink::MissPort(Message box, Message line) {
  missing_ = true;
  seams_.timers.poll_timer.Enabled(false);
  seams_.dialogs.Exclamation(state_.Text(box), state_.Text(Message::kWarning));
  // The port may have come while the box stood.
  if (missing_) panel_.port_line.Caption(state_.Text(line));
}

void UpsLink::OnDevicesChange() {
  if (!missing_ || !OpenChosen()) return;
  missing_ = false;
  seams_.timers.poll_timer.Enabled(true);
}

bool UpsLink::Open(int number) {
  SerialPort& port = seams_.ups_port;
  if (!port.Select(number) || !port.Open()) return false;
  state_.Main.PortWasOpen = true;
  panel_.port_line.Caption(PortLine(state_, number));
  return true;
}

// Without calls nobody needs one.
bool UpsLink::IsModem(int number) const {
  return state_.Settings[kDialConditions] != 0 && number == state_.Settings[kModemPort];
}

// A port of the search. The modem is not to get polls.
bool UpsLink::Try(int number) {
  if (IsModem(number)) return false;
  state_.Main.PortTry = static_cast<std::int16_t>(number - 1);
  state_.Main.PortPolls = 0;
  return Open(number);
}

bool UpsLink::SearchPort() {
  // No port has the number 0, which stands for none found.
  if (Try(found_port_)) return true;
  for (int number = 1; number <= kLastPort; ++number) {
    if (Try(number)) return true;
  }
  return false;
}

bool UpsLink::Searching() const {
  return state_.Settings[kUpsPort] == 0 && found_port_ != seams_.ups_port.Number();
}

// The present one comes last.
void UpsLink::OpenNextPort() {
  const int present = seams_.ups_port.Number();
  seams_.ups_port.Close();
  for (int step = 0; step < kLastPort; ++step) {
    if (Try((present + step) % kLastPort + 1)) return;
  }
}

void UpsLink::OnPoll() {
  MainFormState& form = state_.Main;
  ++form.PollsSent;
  Forget(form.RxText);
  SerialPort& port = seams_.ups_port;
  const bool over = !port.IsOpen() || form.PortPolls >= kPollsToFind || IsModem(port.Number());
  if (Searching()) {
    if (over) OpenNextPort();
  } else {
    // A lost port is asked for again with every poll; until it is back the watchdog shows the loss.
    static_cast<void>(port.Open());
  }
  ++form.PortPolls;
  if (port.IsOpen()) static_cast<void>(SendCommand(port, kStatusQuery));
  if (form.PollsSent - form.PollsAnswered > kUnansweredPolls) LinkLoss();
  RefreshWarningLine();
}

void UpsLink::Suspend() {
  Timer& poll = seams_.timers.poll_timer;
  suspended_ = suspended_ || poll.Enabled();
  poll.Enabled(false);
  seams_.ups_port.Close();
}

void UpsLink::Resume() {
  if (!std::exchange(suspended_, false)) return;
  // A device that takes its time to come back is asked for again with every poll.
  static_cast<void>(seams_.ups_port.Open());
  seams_.timers.poll_timer.Enabled(true);
}

void UpsLink::LinkLoss() {
  panel_.link.Caption(state_.Text(Message::kNotConnected));
  panel_.link.ForeColor(kRed);
  for (Label& field : panel_.information) field.Caption("UnKnown");
  for (Label* line : {&panel_.mains, &panel_.battery, &panel_.bypass, &panel_.ups}) {
    line->Caption("");
  }
  state_.Main.PollsSent = 0;
  state_.Main.Data = {};
  {
    const ValueMirror::Batch batch(mirror_);
    for (const Gauge gauge : kGauges) {
      SetGauge(state_.Main, panel_, gauge, kLostGauges[gauge]);
      panel_.read_outs[gauge].Caption("0");
    }
  }
  seams_.timers.countdown_timer.Enabled(false);
  panel_.status_line.Caption(state_.Text(Message::kReady));
}

// By colour, not by caption: a warning stays while the link is down.
void UpsLink::RefreshWarningLine() {
  Label& warning = panel_.supply_warning;
  if (IsRed(panel_.bypass)) {
    warning.Caption(state_.Text(Message::kBypassWarning));
    warning.Visible(true);
  } else if (IsRed(panel_.mains)) {
    warning.Visible(true);
    warning.Caption(state_.Text(Message::kMainsWarning));
  } else {
    warning.Visible(false);
  }
}

void UpsLink::OnReceive() {
  seams_.ups_port.Read(received_);
  std::string& text = state_.Main.RxText;
  for (std::size_t begin = 0; begin < received_.size();) {
    const std::size_t line_end = received_.find(kLineEnd, begin);
    const bool whole = line_end != std::string::npos;
    const std::size_t end = whole ? line_end + 1 : received_.size();
    text.append(received_, begin, end - begin);
    const bool was_up = panel_.link.ForeColor() == kBlue;
    OnReply(decoder_.Decode(), was_up);
    // What is whole and no reply belongs to none that follows.
    if (whole) text.clear();
    begin = end;
  }
  Forget(received_);
  if (OnShown) OnShown();
}

void UpsLink::OnReply(Reply reply, bool was_up) {
  if (reply == Reply::kNone) return;
  SerialPort& port = seams_.ups_port;
  MainFormState& form = state_.Main;
  if (state_.Settings[kUpsPort] == 0) found_port_ = port.Number();
  if (reply != Reply::kStatus) return;
  if (!was_up) form.Data.first_poll = form.PollsSent;
  if (form.Data.informed) return;
  const int polls = form.PollsSent - form.Data.first_poll;
  if (polls >= kRatingPoll && form.Data.rating == Question::kNotAsked) {
    form.Data.rating = Question::kAsked;
    static_cast<void>(SendCommand(port, kRatingQuery));
  } else if (polls >= kNamePoll && form.Data.name == Question::kNotAsked) {
    form.Data.name = Question::kAsked;
    static_cast<void>(SendCommand(port, kNameQuery));
  }
}

void UpsLink::OnLinkChange() {
  if (panel_.link.ForeColor() == kRed) {
    panel_.supply_warning.Visible(false);
    panel_.overload_warning.Visible(false);
  }
  // On a port that is not open the query is lost, and nobody needs to know.
  static_cast<void>(SendCommand(seams_.ups_port, kInformationQuery));
}

}  // namespace orvane
