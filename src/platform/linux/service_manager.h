// What a service tells systemd of itself (sd_notify(3)). Without a service manager nothing happens,
// and one that stands still holds nothing up.
#pragma once

#include <string>

#include "platform/linux/file.h"

namespace orvane {

class ServiceManager {
 public:
  ServiceManager();

  // The start is over.
  void Ready() { Tell("READY=1"); }

  // One line on what the service is doing; only a change is sent.
  void Status(const std::string& text);

  // The service is not hung. It is restarted when this does not come in time.
  void Alive() { Tell("WATCHDOG=1"); }

  // The end has begun.
  void Stopping() { Tell("STOPPING=1"); }

 private:
  void Tell(const std::string& words) const;

  File socket_;
  std::string path_;  // of the manager's socket
  std::string status_;
};

// Takes out of memory what only the start needed of the program and its libraries, as symbol tables
// and relocations. What is wanted again comes back from the system's cache.
void DropStartPages();

// Standard error goes to the journal, which takes a priority at the head of each line
// (sd-daemon(3)).
bool JournalTakesErrors();

}  // namespace orvane
