// Tells when devices have come or gone.
#pragma once

#include <QFileSystemWatcher>
#include <QTimer>
#include <functional>
#include <string>
#include <vector>

namespace orvane {

class DeviceWatch : public QObject {
 public:
  // Has `on_change` run from the event loop when something has changed in /dev or in the folders of
  // `devices`, which need not exist: a moment after the last change of a flurry, when the rights of
  // a new device are set, too. Empty names are passed over.
  DeviceWatch(std::vector<std::string> devices, std::function<void()> on_change);

 private:
  void Watch();

  const std::vector<std::string> devices_;
  QFileSystemWatcher watcher_;
  QTimer flurry_;
};

}  // namespace orvane
