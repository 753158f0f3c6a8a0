// What a service tells systemd of itself (sd_notify(3)). Without a service manager nothing happens.
#pragma once

#include <string>

namespace orvane {

class ServiceManager {
 public:
  // The start is over.
  void Ready();

  // One line on what the service is doing; only a change is sent.
  void Status(const std::string& text);

  // The service is not hung. It is restarted when this does not come in time.
  void Alive();

  // The end has begun.
  void Stopping();

 private:
  std::string status_;
};

// Takes out of memory what only the start needed of the program and its libraries, as symbol tables
// and relocations. What is wanted again comes back from the system's cache.
void DropStartPages();

// Standard error goes to the journal, which takes a priority at the head of each line
// (sd-daemon(3)).
bool JournalTakesErrors();

}  // namespace orvane
