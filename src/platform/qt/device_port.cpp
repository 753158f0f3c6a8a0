#include "platform/qt/device_port.h"

#include <filesystem>
#include <utility>

namespace orvane {
namespace {

namespace fs = std::filesystem;

constexpr int kLastPort = 4;

// What is kept for a caller that does not fetch it.
constexpr std::size_t kMostWaiting = std::size_t{64} * 1024;

bool IsHid(const fs::path& device) {
  return device.filename().string().starts_with("hidraw");
}

}  // namespace

DevicePort::DevicePort(std::function<std::string(int)> device_of, std::chrono::milliseconds gather)
    : device_of_(std::move(device_of)),
      gather_(static_cast<int>(gather.count())),
      serial_(gather_ > 0) {
  gather_timer_.setSingleShot(true);
  gather_timer_.setTimerType(Qt::PreciseTimer);
  connect(&gather_timer_, &QTimer::timeout, this, &DevicePort::Collect);
  for (Channel* channel : {static_cast<Channel*>(&serial_), static_cast<Channel*>(&hid_)}) {
    channel->OnArrival = [this] { Arrived(); };
    channel->OnLoss = [this] { Lost(); };
  }
}

DevicePort::~DevicePort() {
  Close();
}

bool DevicePort::Select(int number) {
  if (open_ || number < 1 || number > kLastPort) return false;
  number_ = number;
  return true;
}

bool DevicePort::Open() {
  if (open_) return true;
  Close();
  const std::string device = device_of_(number_);
  if (device.empty()) return false;
  // Whatever keeps others off goes by the device's own name, whichever link leads to it.
  std::error_code error;
  const fs::path own_name = fs::canonical(device, error);
  channel_ = IsHid(device) || IsHid(own_name) ? static_cast<Channel*>(&hid_) : &serial_;
  if (!channel_->Open(own_name.empty() ? device : own_name.string())) return false;
  open_ = true;
  channel_->Rest();
  return true;
}

void DevicePort::Close() {
  open_ = false;
  gathering_ = false;
  gather_timer_.stop();
  waiting_.clear();
  channel_->Close();
}

bool DevicePort::Write(std::string_view text) {
  return open_ && channel_->Write(text) && open_;
}

void DevicePort::Read(std::string& text) {
  text += waiting_;
  waiting_.clear();
}

void DevicePort::Discard() {
  waiting_.clear();
  if (!open_ || gathering_) return;
  channel_->Take(waiting_, 0);
  channel_->Rest();
}

void DevicePort::Notify(bool on) {
  notify_ = on;
  if (notify_ && !waiting_.empty()) {
    QMetaObject::invokeMethod(this, &DevicePort::Announce, Qt::QueuedConnection);
  }
}

// The port closes by itself. The object that reports is still at work and is put away afterwards.
void DevicePort::Lost() {
  if (!open_) return;
  open_ = false;
  QMetaObject::invokeMethod(
      this,
      [this] {
        if (!open_) Close();
      },
      Qt::QueuedConnection);
}

void DevicePort::Arrived() {
  if (!open_) return;
  if (gather_ == 0) {
    Collect();
  } else if (!std::exchange(gathering_, true)) {
    gather_timer_.start(gather_);
  }
}

void DevicePort::Collect() {
  if (!open_) return;
  channel_->Take(waiting_, kMostWaiting - waiting_.size());
  if (!open_) return;
  gathering_ = false;
  channel_->Rest();
  Announce();
}

void DevicePort::Announce() {
  if (notify_ && !waiting_.empty() && OnReceive) OnReceive();
}

}  // namespace orvane
