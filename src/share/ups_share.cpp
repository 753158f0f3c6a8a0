#include "share/ups_share.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "link/commands.h"

namespace orvane {
namespace {

constexpr std::size_t kMostPeers = 16;
constexpr std::size_t kBytesASecond = std::size_t{16} * 1024;
constexpr std::size_t kCommandsASecond = 4;
constexpr int kPollsToAskAgain = 15;

// upsmon asks upsd every five seconds. One more is lost where whole seconds are counted.
constexpr std::chrono::seconds kTimeToAsk{7};

// What a client may ask for, as the entries of the menu send it.
struct Command {
  std::string_view name;
  std::string_view text;
};

constexpr Command kCommands[] = {
    {"test.battery.start.quick", kSelfTest10Seconds},
    {"test.battery.start.deep", kSelfTestToLow},
    {"test.battery.stop", kCancelSelfTest},
    {"beeper.toggle", kToggleBeeper},
};

// What comes of a request, as upsd counts.
constexpr std::string_view kHandled = "0";
constexpr std::string_view kNotKnown = "1";
constexpr std::string_view kInvalid = "2";
constexpr std::string_view kFailed = "3";

using Words = std::vector<std::string>;

// The name under which upsd wants to hear what came of the request; empty for none.
std::string TrackingOf(const Words& words) {
  const std::size_t count = words.size();
  if (count < 4 || words[count - 2] != "TRACKING") return "";
  const std::string& id = words.back();
  const auto plain = [](char c) { return c > ' ' && c <= '~' && c != '"' && c != '\\'; };
  return std::all_of(id.begin(), id.end(), plain) ? id : "";
}

std::string Outcome(const Words& words, std::string_view outcome) {
  const std::string id = TrackingOf(words);
  return id.empty() ? "" : "TRACKING " + id + ' ' + std::string(outcome) + '\n';
}

void AppendVariable(std::string& text, const UpsVariable& variable) {
  text += "SETINFO ";
  text += variable.name;
  text += ' ';
  AppendQuoted(text, variable.value);
  text += '\n';
}

std::string_view FreshnessLine(const UpsVariables& variables) {
  return variables.stale ? "DATASTALE\n" : "DATAOK\n";
}

// The lines that make `now` of `before`. Old news are called so before any of them goes, and are
// called good when all stand.
std::string Difference(const UpsVariables& before, const UpsVariables& now) {
  std::string text;
  if (now.stale && !before.stale) text += FreshnessLine(now);
  for (std::size_t i = 0; i < now.list.size(); ++i) {
    const UpsVariable& variable = now.list[i];
    if (variable == before.list[i]) continue;
    if (variable.value.empty()) {
      text += "DELINFO " + std::string(variable.name) + '\n';
    } else {
      AppendVariable(text, variable);
    }
  }
  if (!now.stale && before.stale) text += FreshnessLine(now);
  return text;
}

}  // namespace

bool UpsShare::Allowance::Take(std::chrono::sys_seconds now, std::size_t count, std::size_t most) {
  if (now != second) used = 0;
  second = now;
  used += count;
  return used <= most;
}

void UpsShare::Start() {
  LocalServer& server = seams_.share_server;
  server.OnConnect = [this](Peer peer) { OnConnect(peer); };
  server.OnReceive = [this](Peer peer, std::string_view bytes) { OnReceive(peer, bytes); };
  server.OnClose = [this](Peer peer) { sessions_.erase(peer); };
  polls_ = 0;
  static_cast<void>(server.Open());
}

void UpsShare::Stop() {
  seams_.share_server.Close();
  sessions_.clear();
}

void UpsShare::Update() {
  if (sessions_.empty()) return;
  UpsVariables now = Describe();
  if (now == told_) return;
  const std::string text = Difference(told_, now);
  told_ = std::move(now);
  std::vector<Peer> peers;
  for (const auto& [peer, session] : sessions_) {
    if (session.broadcast) peers.push_back(peer);
  }
  for (const Peer peer : peers) static_cast<void>(Tell(peer, text));
}

void UpsShare::OnPoll() {
  Update();
  if (++polls_ < kPollsToAskAgain) return;
  polls_ = 0;
  if (seams_.share_server.IsOpen()) return;
  Stop();
  static_cast<void>(seams_.share_server.Open());
}

void UpsShare::TellGoingDown() {
  going_down_ = true;
  going_down_since_ = seams_.clock.SystemSeconds();
  if (!seams_.host.StaysUp()) return Update();
  if (!seams_.share_server.IsOpen()) return;
  const UpsVariables others = DescribeUps(panel_, state_, true);
  seams_.host.Report("whoever shares this UPS would now be told to go down (" +
                     std::string(ValueOf(others, "ups.status")) +
                     "); Action=None keeps it from them");
}

void UpsShare::AwaitOthers() {
  if (sessions_.empty() || seams_.host.StaysUp()) return;
  // A clock that was set meanwhile makes it no longer.
  const auto passed = seams_.clock.SystemSeconds() - going_down_since_;
  const std::chrono::seconds left =
      std::clamp<std::chrono::seconds>(kTimeToAsk - passed, std::chrono::seconds(0), kTimeToAsk);
  if (left.count() > 0) seams_.share_server.ServeFor(left);
}

// A place for one more is made by whoever has never said anything, else by whoever has been silent
// for the longest time: upsd speaks at once, and then every few seconds.
void UpsShare::OnConnect(Peer peer) {
  if (sessions_.size() == kMostPeers) {
    const auto last =
        std::min_element(sessions_.begin(), sessions_.end(), [](const auto& a, const auto& b) {
          return std::pair(a.second.spoken, a.second.heard) <
                 std::pair(b.second.spoken, b.second.heard);
        });
    seams_.share_server.Drop(last->first);
    sessions_.erase(last);
  }
  if (sessions_.empty()) told_ = Describe();
  sessions_[peer].heard = ++events_;
}

void UpsShare::OnReceive(Peer peer, std::string_view bytes) {
  const auto found = sessions_.find(peer);
  if (found == sessions_.end()) return;
  Session& session = found->second;
  session.heard = ++events_;
  if (!session.bytes.Take(seams_.clock.SystemSeconds(), bytes.size(), kBytesASecond)) {
    return CutOff(peer);
  }
  while (session.reader.Next(bytes)) {
    session.spoken = true;
    // With false the session has gone.
    if (!Answer(peer, session)) return;
  }
}

bool UpsShare::Answer(Peer peer, Session& session) {
  const Words& words = session.reader.Words();
  if (words.empty()) return true;
  const std::string& order = words[0];
  if (order == "PING") return Tell(peer, "PONG\n");
  if (order == "DUMPALL") {
    const std::string dump = Dump();
    // The others have been told what is new, and one that takes nothing any more has gone.
    return sessions_.contains(peer) && Tell(peer, dump);
  }
  if (order == "INSTCMD") return Tell(peer, Instruct(words));
  if (order == "SET") return Tell(peer, Outcome(words, kNotKnown));
  if (order == "GETPID") {
    return Tell(peer, "PID " + std::to_string(seams_.share_server.ProcessId()) + '\n');
  }
  if (order == "NOBROADCAST") session.broadcast = false;
  if (order == "BROADCAST") session.broadcast = words.size() < 2 || words[1] != "0";
  if (order != "LOGOUT") return true;
  seams_.share_server.Drop(peer);
  sessions_.erase(peer);
  return false;
}

std::string UpsShare::Dump() {
  Update();
  std::string text;
  for (const UpsVariable& variable : told_.list) {
    if (!variable.value.empty()) AppendVariable(text, variable);
  }
  for (const Command& command : kCommands) {
    text += "ADDCMD " + std::string(command.name) + '\n';
  }
  text += FreshnessLine(told_);
  return text + "DUMPDONE\n";
}

std::string UpsShare::Instruct(const Words& words) {
  if (words.size() < 2) return "";
  const auto command = std::find_if(std::begin(kCommands), std::end(kCommands),
                                    [&](const Command& row) { return row.name == words[1]; });
  if (command == std::end(kCommands)) return Outcome(words, kNotKnown);
  const std::size_t behind = words.size() >= 4 && words[words.size() - 2] == "TRACKING" ? 2 : 0;
  if (words.size() - behind > 2) return Outcome(words, kInvalid);
  if (going_down_ || !commands_.Take(seams_.clock.SystemSeconds(), 1, kCommandsASecond)) {
    return Outcome(words, kFailed);
  }
  const bool sent = SendCommand(seams_.ups_port, command->text);
  seams_.host.Report("a client of upsd asks for " + std::string(command->name) +
                     (sent ? "" : ", which the port of the UPS does not take"));
  return Outcome(words, sent ? kHandled : kFailed);
}

bool UpsShare::Tell(Peer peer, const std::string& text) {
  if (text.empty() || seams_.share_server.Send(peer, text)) return true;
  CutOff(peer);
  return false;
}

void UpsShare::CutOff(Peer peer) {
  seams_.share_server.Drop(peer);
  sessions_.erase(peer);
  if (std::exchange(told_cut_off_, true)) return;
  seams_.host.Report(
      "a program was cut off from the socket for upsd: it says too much, or does not "
      "read what it is told");
}

UpsVariables UpsShare::Describe() const {
  return DescribeUps(panel_, state_, going_down_ && !seams_.host.StaysUp());
}

}  // namespace orvane
