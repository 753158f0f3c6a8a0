// A local stream socket on which other programs of this machine call.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string_view>

namespace orvane {

struct LocalServer {
  // One connection. No number is used twice.
  using Peer = std::uint64_t;

  virtual ~LocalServer() = default;

  // Run from the event loop, or inside ServeFor. OnClose tells of a peer that has gone by itself.
  std::function<void(Peer)> OnConnect;
  std::function<void(Peer, std::string_view)> OnReceive;
  std::function<void(Peer)> OnClose;

  // Listens from now on. False where no socket is named, and where it cannot be had: a line on
  // standard error then says why, once for each reason. A socket that nobody serves is replaced.
  virtual bool Open() = 0;

  // It listens, and its socket stands where the others look for it.
  virtual bool IsOpen() const = 0;

  // Ends all connections, and the socket goes. OnClose does not run.
  virtual void Close() = 0;

  // Hands the text to the peer, now as far as it takes it and the rest as it reads on. False when
  // more than 16 KB would wait for it, or it has gone: it is dropped, and OnClose does not run.
  virtual bool Send(Peer peer, std::string_view text) = 0;

  // Ends one connection. OnClose does not run.
  virtual void Drop(Peer peer) = 0;

  // Serves the peers for so long, and no other event of the program.
  virtual void ServeFor(std::chrono::milliseconds time) = 0;

  // The number of this process.
  virtual int ProcessId() const = 0;
};

}  // namespace orvane
