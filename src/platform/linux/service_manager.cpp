#include "platform/linux/service_manager.h"

#include <sys/stat.h>
#include <systemd/sd-daemon.h>
#include <unistd.h>

#include <cstdlib>

namespace orvane {

void ServiceManager::Ready() {
  sd_notify(0, "READY=1");
}

void ServiceManager::Status(const std::string& text) {
  if (text == status_) return;
  status_ = text;
  sd_notify(0, ("STATUS=" + text).c_str());
}

void ServiceManager::Alive() {
  sd_notify(0, "WATCHDOG=1");
}

void ServiceManager::Stopping() {
  sd_notify(0, "STOPPING=1");
}

bool JournalTakesErrors() {
  const char* stream = std::getenv("JOURNAL_STREAM");
  struct stat error {};
  if (!stream || fstat(STDERR_FILENO, &error) != 0) return false;
  return std::to_string(error.st_dev) + ':' + std::to_string(error.st_ino) == stream;
}

}  // namespace orvane
