// The whole program in virtual time, on a UPS that answers every poll, with the alert's window.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <string>

#include "support/running_program.h"

namespace orvane::test {

// Status bits: mains, battery, bypass, UPS.
inline constexpr const char* kAllWell = "0000";
inline constexpr const char* kMainsFailed = "1000";
inline constexpr const char* kMainsFailedBatteryLow = "1100";

// Slots 1 to 6: delay and battery-low delay in minutes and seconds, warning time in minutes,
// warning period in seconds.
using Slots = std::array<int, 6>;
inline constexpr Slots kTenMinutes = {10, 0, 2, 0, 2, 30};

struct WatchedComputer : RunningProgram {
  WatchedComputer() : RunningProgram(Language::kEnglish) {
    time.SetWall({2001, 2, 16, 9, 5, 33});
    forms.OnLoad = [this](Form which) {
      if (which == Form::kMain) form.Load();
      if (which == Form::kAlert) form.Alert().Load();
    };
    forms.OnUnload = [this](Form which) {
      if (which == Form::kMain) form.Unload();
      if (which == Form::kAlert) form.Alert().Unload();
    };
  }

  void Start(const Slots& slots) {
    std::string line = "1,";
    for (const int slot : slots) line += std::to_string(slot) + ',';
    disk.files["/prog/Orvane.ini"] = line + "1,3,0,\"\",0\r\n";
    ASSERT_TRUE(form.Load());
    forms.open.insert(Form::kMain);
    form.Activate();
  }

  void Seconds(int count) { time.Advance(std::chrono::seconds(count)); }

  // Runs until the poll that brings the new bits in is over.
  void NextReply(const char* bits) {
    status.bits = bits;
    const auto polls = state.Main.PollsSent;
    for (int i = 0; i < 5 && state.Main.PollsSent == polls; ++i) {
      time.Advance(std::chrono::milliseconds(500));
    }
  }

  // Ticks of countdown_timer, which has to be running.
  void Ticks(int count) {
    ASSERT_TRUE(countdown_timer.Enabled());
    Seconds(count);
  }

  auto Count(const std::string& event) const {
    return std::count(events.begin(), events.end(), event);
  }
  bool Down() const { return Count("TakeDown") > 0; }
  bool AlertOpen() const { return forms.open.contains(Form::kAlert); }

  const std::string& Status() const { return panel.status_line.Caption(); }

  static std::string SecondsLeft(int seconds) {
    return "System Will shutdown after " + std::to_string(seconds) + " Seconds";
  }
};

class WatchedUps : public testing::Test, public WatchedComputer {};

}  // namespace orvane::test
