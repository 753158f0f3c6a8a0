#include "platform/qt/hid_channel.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QSocketNotifier>
#include <algorithm>
#include <array>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <utility>

#include "platform/hid_reports.h"

namespace orvane {
namespace {

// What may wait to leave: commands are a few bytes each.
constexpr std::size_t kMostLeaving = 64;
// The longest report of a device that is not what it seems to be.
constexpr std::size_t kLongestReport = 4096;
// Read at once, filling included, of a device that never stops.
constexpr std::size_t kMostRead = std::size_t{64} * 1024;

}  // namespace

// Writes the reports on a thread of its own: the kernel waits for seconds on a device that hangs,
// whatever the descriptor's flags. Lives until the thread has ended.
class HidChannel::Writer {
 public:
  static std::shared_ptr<Writer> Start(File device) {
    auto writer = std::make_shared<Writer>(std::move(device));
    std::thread([writer] { writer->Run(); }).detach();
    return writer;
  }

  explicit Writer(File device) : device_(std::move(device)) {}

  // False when the device has refused a report before, or too many still wait.
  bool Put(std::string_view text) {
    const std::vector<OutputReport> reports = OutputReports(text);
    const std::lock_guard lock(mutex_);
    if (refused_ || waiting_.size() + reports.size() > kMostLeaving) return false;
    waiting_.insert(waiting_.end(), reports.begin(), reports.end());
    changed_.notify_one();
    return true;
  }

  // The thread ends when everything is written.
  void End() {
    const std::lock_guard lock(mutex_);
    ending_ = true;
    changed_.notify_one();
  }

 private:
  void Run() {
    std::unique_lock lock(mutex_);
    for (;;) {
      changed_.wait(lock, [this] { return ending_ || !waiting_.empty(); });
      if (waiting_.empty()) return;
      const OutputReport report = waiting_.front();
      waiting_.pop_front();
      lock.unlock();
      // One write is one report.
      const ssize_t written = write(device_.Get(), report.data(), report.size());
      lock.lock();
      if (written == static_cast<ssize_t>(report.size())) continue;
      refused_ = true;
      waiting_.clear();
    }
  }

  const File device_;
  std::mutex mutex_;  // of all that follows
  std::condition_variable changed_;
  std::deque<OutputReport> waiting_;
  bool refused_ = false;
  bool ending_ = false;
};

HidChannel::HidChannel() = default;

HidChannel::~HidChannel() {
  HidChannel::Close();
}

bool HidChannel::Open(const std::string& device) {
  File file(open(device.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC));
  struct stat status {};
  if (!file || fstat(file.Get(), &status) != 0 || !S_ISCHR(status.st_mode)) return false;
  if (flock(file.Get(), LOCK_EX | LOCK_NB) != 0) return false;
  File own(fcntl(file.Get(), F_DUPFD_CLOEXEC, 0));
  if (!own) return false;
  device_ = std::move(own);
  writer_ = Writer::Start(std::move(file));
  asked_ = false;
  notifier_ = std::make_unique<QSocketNotifier>(device_.Get(), QSocketNotifier::Read);
  notifier_->setEnabled(false);
  connect(notifier_.get(), &QSocketNotifier::activated, this, [this] {
    notifier_->setEnabled(false);
    OnArrival();
  });
  return true;
}

void HidChannel::Close() {
  if (!device_) return;
  notifier_.reset();
  writer_->End();
  writer_.reset();
  // The writer's descriptor is still open, and shares the lock.
  flock(device_.Get(), LOCK_UN);
  device_ = File();
}

bool HidChannel::Write(std::string_view text) {
  std::string dropped;
  if (!ReadReports(dropped)) return false;
  asked_ = true;
  if (writer_->Put(text)) return true;
  OnLoss();
  return false;
}

void HidChannel::Take(std::string& text, std::size_t room) {
  std::string arrived;
  if (ReadReports(arrived) && asked_) text.append(arrived, 0, room);
}

void HidChannel::Rest() {
  notifier_->setEnabled(true);
}

// What is there, never waiting for more. False when the device is gone.
bool HidChannel::ReadReports(std::string& text) {
  pollfd input{device_.Get(), POLLIN, 0};
  for (std::size_t bytes = 0; bytes < kMostRead && poll(&input, 1, 0) > 0;) {
    std::array<char, kLongestReport> report;
    const ssize_t count = read(device_.Get(), report.data(), report.size());
    if (count <= 0) {
      OnLoss();
      return false;
    }
    bytes += static_cast<std::size_t>(count);
    AppendText({report.data(), static_cast<std::size_t>(count)}, text);
  }
  return true;
}

}  // namespace orvane
