// What lies outside for the protection check, as the test says it.
#pragma once

#include <functional>
#include <string>
#include <utility>

#include "platform/inspector.h"

namespace orvane::test {

// All is well.
inline OutsideFindings WellFound() {
  OutsideFindings found;
  found.rights = RightsFound{Right::kYes, Right::kYes};
  found.blockers = "";
  found.companion = CompanionFound{true, ORVANE_VERSION, ""};
  found.others = OthersFound{};
  found.free_bytes = 1'000'000'000;
  found.autostart = Autostart::kOn;
  found.way_down = std::chrono::seconds(15);
  return found;
}

class FakeInspector : public Inspector {
 public:
  OutsideFindings found = WellFound();
  LastStep last;
  int asked = 0;
  bool may_write = true;
  std::function<void()> Answer;  // of the last Ask

  void Ask(std::function<void()> on_answer) override {
    ++asked;
    Answer = std::move(on_answer);
  }
  const OutsideFindings& Found() const override { return found; }
  LastStep Last() const override { return last; }
  std::string DeviceOf(int port) const override { return "/dev/ttyS" + std::to_string(port - 1); }
  bool StartWithDesktop(bool on) override {
    if (may_write) found.autostart = on ? Autostart::kOn : Autostart::kOff;
    return may_write;
  }
};

}  // namespace orvane::test
