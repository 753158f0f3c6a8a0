// A local socket of tests: peers call and speak, and what each was told is kept.
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
  int tries = 0;          // times that it was to be opened
  std::set<Peer> stuck;   // peers that take nothing any more

  Peer Call() {
    peers_.insert(++last_);
    OnConnect(last_);
    return last_;
  }
  // What the peer was told since it was last asked here.
  std::string Heard(Peer peer) { return std::exchange(told_[peer], ""); }
  // The same, since it has said something now.
  std::string Say(Peer peer, std::string_view bytes) {
    Heard(peer);
    if (Connected(peer)) OnReceive(peer, bytes);
    return Heard(peer);
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
    if (stuck.contains(peer)) Drop(peer);
    if (!Connected(peer)) return false;
    told_[peer] += text;
    events_.push_back("Tell " + std::string(text.substr(0, text.find('\n'))));
    return true;
  }
  void Drop(Peer peer) override { peers_.erase(peer); }
  void ServeFor(std::chrono::milliseconds time) override {
    events_.push_back("Serve " + std::to_string(time.count()));
    time_.Jump(time);
  }
  int ProcessId() const override { return 4711; }

 private:
  FakeTime& time_;
  Events& events_;
  std::map<Peer, std::string> told_;
  std::set<Peer> peers_;
  Peer last_ = 0;
  bool open_ = false;
};

}  // namespace orvane::test
