// The applications of a user session that systemd keeps, each in a unit of its own
// (systemd.special, app.slice), and those of KWin's, which closes the windows of a Wayland session.
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
  // Where KWin runs, asks it to close all windows: applications may ask their user what to save,
  // and its answer comes when the windows are closed or one of them is to stay. Without KWin, or
  // once all windows are closed, stops the units. That sends SIGTERM to their processes at once,
  // and where a unit says so SIGKILL some seconds later (systemd.kill(5)).
  void AskToClose() override;
  bool Look(std::vector<bool>& gone) override;
  // Until KWin has answered: its windows need not belong to a unit that is listed.
  bool IsAsking() override { return kwin_ && !kwin_->done; }
  // Units that have started since, and programs that the message bus started, which stand in units
  // of other names: those of them that have a desktop entry.
  std::vector<Application> Others(const std::set<pid_t>& spared) override;

 private:
  struct Unit {
    std::string name;
    std::string description;
  };

  explicit UnitDesktop(std::unique_ptr<Bus> bus) : bus_(std::move(bus)) {}
  bool Units(std::initializer_list<const char*> patterns, std::vector<Unit>& units);
  bool AsApplication(const Unit& unit, const std::set<pid_t>& spared, Application& application);
  void StopUnits();
  std::vector<pid_t> Processes(const std::string& unit);

  std::unique_ptr<Bus> bus_;
  std::vector<std::string> listed_;
  std::shared_ptr<BusCall> kwin_;  // the request to it; null before
};

}  // namespace orvane::companion
