// A Unix stream socket in the file system. Whoever may write to its directory's group may call.
#pragma once

#include <sys/stat.h>

#include <functional>
#include <map>
#include <memory>
#include <string>

#include "platform/linux/file.h"
#include "platform/local_server.h"

namespace orvane {

// Everything is watched by one epoll descriptor, so that an event loop has a single one to look at.
class UnixServer : public LocalServer {
 public:
  // Has the event loop run `serve` while there is something to read at `descriptor`, for as long
  // as the result lives.
  using Attach = std::function<std::shared_ptr<void>(int descriptor, std::function<void()> serve)>;

  // `path` is empty where there is to be no socket. `report` takes a line for standard error.
  UnixServer(std::string path, Attach attach, std::function<void(const std::string&)> report)
      : path_(std::move(path)), attach_(std::move(attach)), report_(std::move(report)) {}
  ~UnixServer() override { UnixServer::Close(); }

  bool Open() override;
  bool IsOpen() const override;
  void Close() override;
  bool Send(Peer peer, std::string_view text) override;
  void Drop(Peer peer) override { peers_.erase(peer); }
  void ServeFor(std::chrono::milliseconds time) override { ServeUntil(-1, time); }
  int ProcessId() const override;

  // Serves the peers until there is something to read at `descriptor`, or the time is over. Also
  // where it does not listen, and with no descriptor (-1).
  void ServeUntil(int descriptor, std::chrono::milliseconds time);

 private:
  struct Connection {
    File socket;
    std::string waiting;  // for the peer to read on
  };

  std::string Listen();
  std::string MakeWay() const;
  bool Owns() const;
  void Serve();
  void Accept();
  void Hear(Peer peer, std::uint32_t events);
  void End(Peer peer);
  static bool Write(Connection& connection);
  void Watch(Peer peer, const Connection& connection, int operation) const;

  const std::string path_;
  const Attach attach_;
  const std::function<void(const std::string&)> report_;
  File epoll_;
  File listener_;
  File spare_;  // makes room for a caller to be turned away when descriptors run out
  std::shared_ptr<void> attached_;
  struct stat file_ {};  // the socket in the file system, as it was made
  std::map<Peer, Connection> peers_;
  Peer last_ = 0;
  std::string complaint_;  // the reason that was reported last
};

}  // namespace orvane
