// The whole program in virtual time, on a UPS that answers every poll.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <string>

#include "app/settings.h"
#include "frame/frm_main.h"
#include "support/status_frame.h"
#include "support/world.h"

namespace orvane::test {

// Status bits: mains, battery, bypass, UPS.
inline constexpr const char* kAllWell = "0000";
inline constexpr const char* kMainsFailed = "1000";
inline constexpr const char* kMainsFailedBatteryLow = "1100";
inline constexpr const char* kBatteryLowAlone = "0100";
inline constexpr const char* kUpsFailedAlone = "0001";

// Slots 1 to 6: delay and battery-low delay in minutes and seconds, warning time in minutes,
// warning period in seconds.
using Slots = std::array<int, 6>;

struct WatchedComputer : World {
  WatchedComputer() {
    MSComm1.OnSent = [this](const std::string& text) {
      if (text == "Q1\r" && !silent) MSComm1.Receive(StatusFrame{.bits = bits}.Text());
    };
    forms.OnShow = [this](Form form) {
      if (form != Form::frmAlert) return;
      ++alerts;
      if (!alert_open) main.Alert().Form_Load();
      alert_open = true;
    };
    forms.OnUnload = [this](Form form) {
      if (form != Form::frmAlert) return;
      main.Alert().Form_Unload();
      alert_open = false;
    };
  }

  void Start(const Slots& slots, int language = 0) {
    std::string line = "1,";
    for (const int slot : slots) line += std::to_string(slot) + ',';
    disk.files["/prog/Orvane.ini"] = line + "1,3,0,\"\"," + std::to_string(language) + "\r\n";
    ASSERT_TRUE(main.Form_Load());
    forms.open.insert(Form::frmMain);
    main.Form_Activate();
  }

  void Seconds(int count) { time.Advance(std::chrono::seconds(count)); }

  // Runs until the poll that brings the new bits in is over.
  void NextReply(const char* new_bits) {
    bits = new_bits;
    const auto polls = state.Main.PollsSent;
    while (state.Main.PollsSent == polls) time.Advance(std::chrono::milliseconds(500));
  }

  // One tick of Timer2, which has to be running.
  void Tick() { Ticks(1); }
  void Ticks(int count) {
    ASSERT_TRUE(Timer2.Enabled());
    Seconds(count);
  }

  bool Happened(const std::string& event) const {
    return std::find(events.begin(), events.end(), event) != events.end();
  }
  bool Down() const { return Happened("ExitWindowsEx 1 0"); }

  const std::string& Status() const { return panel.Label13.Caption(); }

  static std::string SecondsLeft(int seconds) {
    return "System Will shutdown after " + std::to_string(seconds) + " Seconds";
  }

  FrmMain main{state, panel, seams};
  const char* bits = kAllWell;
  bool silent = false;
  int alerts = 0;  // how often the alert was asked for
  bool alert_open = false;
};

class WatchedUps : public testing::Test, public WatchedComputer {};

}  // namespace orvane::test
