#include "simulate/pseudo_terminal.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/inotify.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <system_error>

namespace orvane {
namespace {

namespace fs = std::filesystem;

std::string Reason(const char* step) {
  return std::string(step) + ": " + std::strerror(errno);
}

}  // namespace

std::string PseudoTerminal::Open() {
  if (IsOpen()) return {};
  const auto failed = [this](std::string reason) {
    Close();
    return reason;
  };
  master_ = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK);
  if (master_ < 0) return Reason("no pseudo-terminal");
  std::array<char, 128> name{};
  if (grantpt(master_) != 0 || unlockpt(master_) != 0 ||
      ptsname_r(master_, name.data(), name.size()) != 0) {
    return failed(Reason("no pseudo-terminal"));
  }
  slave_ = open(name.data(), O_RDWR | O_NOCTTY | O_CLOEXEC);
  termios settings{};
  if (slave_ < 0 || tcgetattr(slave_, &settings) != 0) return failed(Reason(name.data()));
  cfmakeraw(&settings);
  if (tcsetattr(slave_, TCSANOW, &settings) != 0) return failed(Reason(name.data()));
  name_ = name.data();
  programs_ = 0;
  watch_ = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
  if (watch_ >= 0 && inotify_add_watch(watch_, name_.c_str(), IN_OPEN | IN_CLOSE) < 0) Unwatch();
  if (std::string reason = MakeLink(); !reason.empty()) return failed(reason);
  return {};
}

void PseudoTerminal::Close() {
  if (!name_.empty()) RemoveLink();
  name_.clear();
  Unwatch();
  if (slave_ >= 0) close(slave_);
  if (master_ >= 0) close(master_);
  slave_ = master_ = -1;
}

std::string PseudoTerminal::Read() {
  if (!IsOpen()) return {};
  std::array<char, 4096> bytes;
  const ssize_t count = read(master_, bytes.data(), bytes.size());
  if (count <= 0) return {};
  // A program that took the port for itself and then died has left it locked, since this end keeps
  // the terminal alive.
  (void)ioctl(slave_, TIOCNXCL);
  return {bytes.data(), static_cast<std::size_t>(count)};
}

void PseudoTerminal::Write(std::string_view bytes) {
  if (!IsOpen()) return;
  CountPrograms();
  if (watch_ >= 0 && programs_ == 0) return;
  while (!bytes.empty()) {
    ssize_t count = write(master_, bytes.data(), bytes.size());
    if (count < 0 && errno == EAGAIN) {
      (void)tcflush(slave_, TCIFLUSH);
      count = write(master_, bytes.data(), bytes.size());
    }
    if (count <= 0) return;
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
}

// Looks up who has come and gone since the last look.
void PseudoTerminal::CountPrograms() {
  // Events without names, all of one size.
  std::array<inotify_event, 64> events;
  ssize_t count = 0;
  while (watch_ >= 0 && (count = read(watch_, events.data(), sizeof events)) > 0) {
    const auto end = events.begin() + count / static_cast<ssize_t>(sizeof(inotify_event));
    for (auto event = events.begin(); event != end; ++event) {
      if (event->mask & IN_Q_OVERFLOW) return Unwatch();
      if (event->mask & IN_OPEN) ++programs_;
      if ((event->mask & IN_CLOSE) && --programs_ == 0) (void)tcflush(slave_, TCIFLUSH);
    }
  }
}

void PseudoTerminal::Unwatch() {
  if (watch_ >= 0) close(watch_);
  watch_ = -1;
}

std::string PseudoTerminal::MakeLink() const {
  if (link_.empty()) return {};
  std::error_code error;
  const auto status = fs::symlink_status(link_, error);
  if (fs::exists(status) && !fs::is_symlink(status)) return link_ + ": exists and is no link";
  // Made aside and renamed, so that nobody ever misses the link or sees half of it.
  const std::string aside = link_ + ".new";
  (void)unlink(aside.c_str());
  if (symlink(name_.c_str(), aside.c_str()) != 0 || rename(aside.c_str(), link_.c_str()) != 0) {
    std::string reason = Reason(link_.c_str());
    (void)unlink(aside.c_str());
    return reason;
  }
  return {};
}

void PseudoTerminal::RemoveLink() const {
  if (link_.empty()) return;
  // Another simulator may have taken the name over meanwhile.
  std::error_code error;
  if (fs::read_symlink(link_, error) == name_ && !error) (void)unlink(link_.c_str());
}

}  // namespace orvane
