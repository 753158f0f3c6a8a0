// The applications of a user session that systemd keeps, each in a unit of its own.
#pragma once

#include <memory>
#include <string>

#include "companion/desktop.h"
#include "platform/linux/bus.h"

namespace orvane::companion {

class UnitDesktop : public Desktop {
 public:
  // Null when there is no such session.
  static std::unique_ptr<UnitDesktop> Open();

  // Units named as those of applications, in `app.slice`, none of whose processes is spared.
  std::vector<Application> List(const std::set<pid_t>& spared) override;
  // Stops the units, which lets their processes end in order.
  void AskToClose() override;
  bool Look(std::vector<bool>& gone) override;

 private:
  struct Unit {
    std::string name;
    std::string description;
  };

  explicit UnitDesktop(std::unique_ptr<Bus> bus) : bus_(std::move(bus)) {}
  bool Units(std::vector<Unit>& units);
  std::vector<pid_t> Processes(const std::string& unit);

  std::unique_ptr<Bus> bus_;
  std::vector<std::string> listed_;
};

}  // namespace orvane::companion
