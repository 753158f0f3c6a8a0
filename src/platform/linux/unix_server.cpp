#include "platform/linux/unix_server.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <iterator>
#include <utility>

namespace orvane {
namespace {

using SteadyClock = std::chrono::steady_clock;

constexpr int kBacklog = 16;
constexpr mode_t kMode = 0660;

// What one peer may cost: what is read at once, what waits to leave, and what lies with the kernel.
constexpr std::size_t kPiece = 4096;
constexpr std::size_t kMostWaiting = std::size_t{16} * 1024;
constexpr int kKernelBuffer = 8 * 1024;

// The listener among the numbers of the peers.
constexpr LocalServer::Peer kListener = 0;

int NewSocket() {
  return socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
}

// The path has to fit.
sockaddr_un AddressOf(const std::string& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  path.copy(address.sun_path, sizeof address.sun_path - 1);
  return address;
}

std::string DirectoryOf(const std::string& path) {
  return path.substr(0, std::max<std::size_t>(path.rfind('/'), 1));
}

}  // namespace

bool UnixServer::Open() {
  if (path_.empty()) return false;
  if (IsOpen()) return true;
  Close();
  const std::string reason = Listen();
  if (!reason.empty()) {
    Close();
    if (reason != complaint_) report_("the UPS is not shared: " + path_ + ": " + reason);
    complaint_ = reason;
    return false;
  }
  complaint_.clear();
  attached_ = attach_(epoll_.Get(), [this] { Serve(); });
  return true;
}

// Empty when it listens, else the reason why not. Nobody may call before the rights are those that
// they shall be.
std::string UnixServer::Listen() {
  if (path_.size() >= sizeof sockaddr_un{}.sun_path) return "the path is too long for a socket";
  if (std::string reason = MakeWay(); !reason.empty()) return reason;
  listener_ = File(NewSocket());
  const sockaddr_un address = AddressOf(path_);
  if (!listener_ || fchmod(listener_.Get(), S_IRUSR | S_IWUSR) != 0 ||
      bind(listener_.Get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
    return std::strerror(errno);
  }
  struct stat directory {};
  if (lstat(path_.c_str(), &file_) != 0 || stat(DirectoryOf(path_).c_str(), &directory) != 0) {
    return std::strerror(errno);
  }
  if (file_.st_gid != directory.st_gid &&
      lchown(path_.c_str(), static_cast<uid_t>(-1), directory.st_gid) != 0) {
    return std::string("the group of its directory cannot be had: ") + std::strerror(errno);
  }
  // Whoever else may write to the directory cannot lead this to another file.
  if (fchmodat(AT_FDCWD, path_.c_str(), kMode, AT_SYMLINK_NOFOLLOW) != 0 ||
      listen(listener_.Get(), kBacklog) != 0) {
    return std::strerror(errno);
  }
  epoll_ = File(epoll_create1(EPOLL_CLOEXEC));
  spare_ = File(open("/dev/null", O_RDONLY | O_CLOEXEC));
  epoll_event event{};
  event.events = EPOLLIN;
  event.data.u64 = kListener;
  if (epoll_ctl(epoll_.Get(), EPOLL_CTL_ADD, listener_.Get(), &event) != 0) {
    return std::strerror(errno);
  }
  return "";
}

// Takes a socket away on which nobody listens. Empty when the place is free, else the reason.
std::string UnixServer::MakeWay() const {
  struct stat present {};
  if (lstat(path_.c_str(), &present) != 0) return errno == ENOENT ? "" : std::strerror(errno);
  if (!S_ISSOCK(present.st_mode)) return "something else has this name";
  const File probe(NewSocket());
  const sockaddr_un address = AddressOf(path_);
  // One whose queue is full is alive, too.
  if (connect(probe.Get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 ||
      errno == EAGAIN) {
    return "another program serves it";
  }
  if (errno != ECONNREFUSED) return std::strerror(errno);
  return unlink(path_.c_str()) == 0 || errno == ENOENT ? "" : std::strerror(errno);
}

bool UnixServer::Owns() const {
  struct stat present {};
  return lstat(path_.c_str(), &present) == 0 && present.st_dev == file_.st_dev &&
         present.st_ino == file_.st_ino;
}

bool UnixServer::IsOpen() const {
  return attached_ && Owns();
}

void UnixServer::Close() {
  attached_.reset();
  peers_.clear();
  if (file_.st_ino != 0 && Owns()) unlink(path_.c_str());
  file_ = {};
  listener_ = File();
  epoll_ = File();
  spare_ = File();
}

bool UnixServer::Send(Peer peer, std::string_view text) {
  const auto found = peers_.find(peer);
  if (found == peers_.end()) return false;
  Connection& connection = found->second;
  const bool waited = !connection.waiting.empty();
  connection.waiting += text;
  if (!Write(connection) || connection.waiting.size() > kMostWaiting) {
    Drop(peer);
    return false;
  }
  if (waited == connection.waiting.empty()) Watch(peer, connection, EPOLL_CTL_MOD);
  return true;
}

// False when the peer has gone.
bool UnixServer::Write(Connection& connection) {
  std::string& waiting = connection.waiting;
  const ssize_t sent = send(connection.socket.Get(), waiting.data(), waiting.size(), MSG_NOSIGNAL);
  if (sent < 0) return errno == EAGAIN || errno == EINTR;
  waiting.erase(0, static_cast<std::size_t>(sent));
  if (waiting.empty()) waiting.shrink_to_fit();
  return true;
}

// Whoever does not read is not listened to.
void UnixServer::Watch(Peer peer, const Connection& connection, int operation) const {
  epoll_event event{};
  event.events = connection.waiting.empty() ? EPOLLIN : EPOLLOUT;
  event.data.u64 = peer;
  epoll_ctl(epoll_.Get(), operation, connection.socket.Get(), &event);
}

// One piece for each peer, so that none keeps the others or the program waiting.
void UnixServer::Serve() {
  epoll_event events[kBacklog];
  const int count = epoll_wait(epoll_.Get(), events, kBacklog, 0);
  for (int i = 0; i < count; ++i) {
    const Peer peer = events[i].data.u64;
    if (peer == kListener) {
      Accept();
    } else {
      Hear(peer, events[i].events);
    }
  }
}

void UnixServer::Accept() {
  File socket(accept4(listener_.Get(), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC));
  if (!socket && (errno == EMFILE || errno == ENFILE)) {
    // A caller that is left in the queue would wake the program without end.
    spare_ = File();
    socket = File(accept4(listener_.Get(), nullptr, nullptr, SOCK_CLOEXEC));
    socket = File();
    spare_ = File(open("/dev/null", O_RDONLY | O_CLOEXEC));
  }
  if (!socket) return;
  setsockopt(socket.Get(), SOL_SOCKET, SO_SNDBUF, &kKernelBuffer, sizeof kKernelBuffer);
  const Peer peer = ++last_;
  Connection& connection = peers_[peer];
  connection.socket = std::move(socket);
  Watch(peer, connection, EPOLL_CTL_ADD);
  OnConnect(peer);
}

void UnixServer::Hear(Peer peer, std::uint32_t events) {
  const auto found = peers_.find(peer);
  // It was dropped while others were heard.
  if (found == peers_.end()) return;
  Connection& connection = found->second;
  if (!connection.waiting.empty()) {
    if ((events & (EPOLLHUP | EPOLLERR)) != 0 || !Write(connection)) return End(peer);
    if (connection.waiting.empty()) Watch(peer, connection, EPOLL_CTL_MOD);
    return;
  }
  char piece[kPiece];
  const ssize_t size = recv(connection.socket.Get(), piece, sizeof piece, 0);
  if (size > 0) return OnReceive(peer, {piece, static_cast<std::size_t>(size)});
  if (size < 0 && (errno == EAGAIN || errno == EINTR)) return;
  End(peer);
}

void UnixServer::End(Peer peer) {
  Drop(peer);
  OnClose(peer);
}

void UnixServer::ServeUntil(int descriptor, std::chrono::milliseconds time) {
  const auto end = SteadyClock::now() + time;
  for (;;) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - SteadyClock::now());
    if (left.count() <= 0) return;
    pollfd waits[] = {{epoll_.Get(), POLLIN, 0}, {descriptor, POLLIN, 0}};
    if (poll(waits, std::size(waits), static_cast<int>(left.count())) <= 0) continue;
    if (waits[0].revents != 0) Serve();
    if (waits[1].revents != 0) return;
  }
}

int UnixServer::ProcessId() const {
  return getpid();
}

}  // namespace orvane
