#include "platform/qt/end_signals.h"

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

namespace orvane {
namespace {

constexpr int kSignals[] = {SIGTERM, SIGINT, SIGHUP};

// A pipe from the signal's handler, which may do next to nothing, to the event loop.
int pipe_ends[2] = {-1, -1};

extern "C" void TellEventLoop(int) {
  const int saved = errno;
  const char byte = 0;
  // A pipe that is full holds a request already.
  [[maybe_unused]] const ssize_t written = write(pipe_ends[1], &byte, 1);
  errno = saved;
}

void Handle(int signal, void (*handler)(int)) {
  struct sigaction action {};
  if (sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN) return;
  action = {};
  action.sa_handler = handler;
  action.sa_flags = SA_RESTART;
  sigemptyset(&action.sa_mask);
  sigaction(signal, &action, nullptr);
}

}  // namespace

EndSignals::EndSignals(std::function<void()> on_end) {
  if (pipe2(pipe_ends, O_CLOEXEC | O_NONBLOCK) != 0) return;
  notifier_ = std::make_unique<QSocketNotifier>(pipe_ends[0], QSocketNotifier::Read);
  QObject::connect(notifier_.get(), &QSocketNotifier::activated, [on_end = std::move(on_end)] {
    char bytes[16];
    while (read(pipe_ends[0], bytes, sizeof bytes) > 0) {
    }
    on_end();
  });
  for (const int signal : kSignals) Handle(signal, TellEventLoop);
}

EndSignals::~EndSignals() {
  if (!notifier_) return;
  for (const int signal : kSignals) Handle(signal, SIG_DFL);
  notifier_.reset();
  for (int& end : pipe_ends) close(std::exchange(end, -1));
}

}  // namespace orvane
