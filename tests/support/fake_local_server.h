// A local socket of tests: peers call and speak, and what each was told stands in `told`.
#pragma once

#include <map>
#include <set>
#include <string>
#include <utility>

#include "platform/local_server.h"
#include "support/fake_system.h"
#include "support/fake_time.h"

namespace orvane::test {

class FakeLocalServer : public LocalServer {
 public:
  FakeLocalServer(FakeTime& time, Events& events) : time_(time), events_(events) {}

  bool named = false;     // the settings name a socket
  bool available = true;  // and it can be had
  std::set<Peer> stuck;   // peers that take nothing any more
  std::map<Peer, std::string> told;

  Peer Call() {
    const Peer peer = ++last_;
    peers_.insert(peer);
    OnConnect(peer);
    return peer;
  }
  // Has the peer say something. What it was told before is forgotten, what it was told since is
  // the result.
  std::string Say(Peer peer, std::string_view bytes) {
    told[peer].clear();
    if (Connected(peer)) OnReceive(peer, bytes);
    return told[peer];
  }
  std::string Heard(Peer peer) { return std::exchange(told[peer], ""); }
  void HangUp(Peer peer) {
    peers_.erase(peer);
    OnClose(peer);
  }
  bool Connected(Peer peer) const { return peers_.contains(peer); }
  std::size_t Peers() const { return peers_.size(); }

  bool Open() override {
    ++tries;
    return open_ = named && available;
  }
  bool IsOpen() const override { return open_ && available; }
  void Close() override {
    open_ = false;
    peers_.clear();
  }
  bool Send(Peer peer, std::string_view text) override {
    if (!Connected(peer) || stuck.contains(peer)) {
      peers_.erase(peer);
      return false;
    }
    told[peer] += text;
    events_.push_back("Tell " + std::string(text.substr(0, text.find('\n'))));
    return true;
  }
  void Drop(Peer peer) override { peers_.erase(peer); }
  void ServeFor(std::chrono::milliseconds time) override {
    events_.push_back("Serve " + std::to_string(time.count()));
    time_.Jump(time);
  }
  int ProcessId() const override { return 4711; }

  int tries = 0;  // times that it was to be opened

 private:
  FakeTime& time_;
  Events& events_;
  std::set<Peer> peers_;
  Peer last_ = 0;
  bool open_ = false;
};

}  // namespace orvane::test
