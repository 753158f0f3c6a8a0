// The UPS as others see it: offered to upsd (Network UPS Tools), which serves it to the other
// computers. upsd calls on a socket of ours; it is told what changes, and what its clients ask for
// comes in by it.
#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "app/panel.h"
#include "app/seams.h"
#include "app/state.h"
#include "share/ups_variables.h"
#include "share/upsd_lines.h"

namespace orvane {

class UpsShare {
 public:
  UpsShare(const State& state, const Panel& panel, const Seams& seams)
      : state_(state), panel_(panel), seams_(seams) {}

  // Offers the UPS, where the settings say so, until Stop.
  void Start();
  void Stop();

  // Tells every peer what has changed on the panel.
  void Update();

  // The same with each poll, which also asks now and then for a socket that could not be had.
  void OnPoll();

  // The way down begins: the others are told to go down as well, here and now. Where the settings
  // leave this computer running, a line on standard error says what they would have been told.
  void TellGoingDown();

  // The last step before the computer is taken down: upsd goes with it, so whoever has not asked
  // upsd for the state since TellGoingDown is given the time for it. Seconds at most, and none
  // where nobody is connected.
  void AwaitOthers();

 private:
  using Peer = LocalServer::Peer;

  // At most so much within a second of the clock.
  struct Allowance {
    std::chrono::sys_seconds second;
    std::size_t used = 0;
    bool Take(std::chrono::sys_seconds now, std::size_t count, std::size_t most);
  };

  struct Session {
    WordReader reader;
    bool broadcast = true;    // takes lines that it has not asked for
    bool spoken = false;      // has said a line
    std::uint64_t heard = 0;  // when it last said anything: the count of such events
    Allowance bytes;
  };

  void OnConnect(Peer peer);
  void OnReceive(Peer peer, std::string_view bytes);
  bool Answer(Peer peer, Session& session);
  std::string Dump();
  std::string Instruct(const std::vector<std::string>& words);
  bool Tell(Peer peer, const std::string& text);
  void CutOff(Peer peer);
  UpsVariables Describe() const;

  const State& state_;
  const Panel& panel_;
  Seams seams_;
  UpsVariables told_;  // what the peers have been told
  std::map<Peer, Session> sessions_;
  std::uint64_t events_ = 0;   // times that any peer has said anything
  Allowance commands_;         // of all peers together
  int polls_ = 0;              // since the socket was last asked for
  bool going_down_ = false;    // TellGoingDown has run
  bool told_cut_off_ = false;  // a line has told of a peer that was cut off
  std::chrono::sys_seconds going_down_since_;
};

}  // namespace orvane
