#include "platform/qt/device_watch.h"

#include <chrono>
#include <filesystem>
#include <utility>

namespace orvane {
namespace {

namespace fs = std::filesystem;

constexpr std::chrono::milliseconds kFlurry{200};

// The nearest folder above a device that is there.
fs::path FolderOf(const fs::path& device) {
  fs::path folder = device.parent_path();
  std::error_code error;
  while (folder.has_relative_path() && !fs::is_directory(folder, error)) {
    folder = folder.parent_path();
  }
  return folder;
}

}  // namespace

DeviceWatch::DeviceWatch(std::vector<std::string> devices, std::function<void()> on_change)
    : devices_(std::move(devices)) {
  flurry_.setSingleShot(true);
  flurry_.setInterval(kFlurry);
  connect(&flurry_, &QTimer::timeout, this, std::move(on_change));
  connect(&watcher_, &QFileSystemWatcher::directoryChanged, this, [this] {
    Watch();
    flurry_.start();
  });
  Watch();
}

void DeviceWatch::Watch() {
  QStringList folders{"/dev"};
  for (const std::string& device : devices_) {
    if (!device.empty()) folders << QString::fromStdString(FolderOf(device).string());
  }
  for (const QString& folder : folders) {
    if (!watcher_.directories().contains(folder)) watcher_.addPath(folder);
  }
}

}  // namespace orvane
