#include "start.h"

#include <fcntl.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QMetaObject>
#include <QSocketNotifier>
#include <utility>

namespace orvane {

std::shared_ptr<void> NotifyOf(int descriptor, std::function<void()> serve) {
  auto notifier = std::make_shared<QSocketNotifier>(descriptor, QSocketNotifier::Read);
  QObject::connect(notifier.get(), &QSocketNotifier::activated,
                   [serve = std::move(serve)] { serve(); });
  return notifier;
}

void PostToLoop(std::function<void()> work) {
  QMetaObject::invokeMethod(
      QCoreApplication::instance(), [work = std::move(work)] { work(); }, Qt::QueuedConnection);
}

void OccupyStandardDescriptors() {
  int descriptor = 0;
  do {
    descriptor = open("/dev/null", O_RDWR);
  } while (descriptor >= 0 && descriptor <= STDERR_FILENO);
  if (descriptor >= 0) close(descriptor);
}

void ReportUnknown(const PlatformSettings& settings, Host& host) {
  if (!settings.unknown_action.empty()) {
    host.Report("platform.ini names no known action (" + settings.unknown_action +
                "); a shutdown halts the computer");
  }
  if (!settings.bad_battery_voltage.empty()) {
    host.Report("platform.ini names no voltage of a battery (" + settings.bad_battery_voltage +
                ")");
  }
  if (!settings.bad_share_name.empty()) {
    host.Report("platform.ini names no UPS to share (" + settings.bad_share_name +
                "): a name has letters, digits, - and _");
  }
}

}  // namespace orvane
