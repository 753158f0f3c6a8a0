// Looks at the computer for the protection check: logind, UPower, the processes, the files.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "platform/inspector.h"
#include "platform/linux/bus_connection.h"
#include "platform/linux/linux_host.h"
#include "platform/linux/platform_settings.h"
#include "platform/timer.h"

namespace orvane {

class LinuxInspector : public Inspector {
 public:
  // Starts a program with one argument and has `on_end` run when it has ended, within two seconds,
  // with what it wrote; or with the reason why it did not do so.
  using RunProgram =
      std::function<void(const std::string& path, const std::string& argument,
                         std::function<void(bool ran, const std::string& text)> on_end)>;

  struct Places {
    std::string program_directory;
    std::string executable;  // of the program itself, which lies beside its companion
    std::string companion;
    std::string processes = "/proc";
  };

  // What the inspector has to know of the program that `host` belongs to.
  static Places PlacesOf(const LinuxHost& host);

  // `limit` belongs to this object.
  LinuxInspector(Places places, const PlatformSettings& settings, BusConnection& bus, Timer& limit,
                 RunProgram run, std::function<std::string(int)> device_of);

  void Ask(std::function<void()> on_answer) override;
  const OutsideFindings& Found() const override { return found_; }
  LastStep Last() const override;
  std::string DeviceOf(int port) const override { return device_of_(port); }
  bool StartWithDesktop(bool on) override;

  // Whether every question has its answer.
  bool Complete() const;

  // The program belongs to no session of a user: what only makes sense there is not asked for.
  void WithoutSession() { found_.in_session = false; }

  // The time that the last way down took; see platform/linux/way_down.h.
  void WayDown(std::optional<std::chrono::seconds> took) { found_.way_down = took; }

 private:
  void LookAtFiles();
  void LookAtProcesses();
  void AskCompanion();
  void AskLogind(Bus& bus);
  void AskUPower(Bus& bus);
  void AskKind(Bus& bus, const std::string& device);
  void GiveUp();
  void Answer() const {
    if (on_answer_) on_answer_();
  }

  const Places places_;
  const PlatformSettings& settings_;
  BusConnection& bus_;
  Timer& limit_;
  const RunProgram run_;
  const std::function<std::string(int)> device_of_;
  std::function<void()> on_answer_;
  OutsideFindings found_;
  OthersFound processes_;         // as the processes tell
  RightsFound rights_;            // of the questions that are under way
  std::size_t rights_asked_ = 0;  // of them without an answer
};

}  // namespace orvane
