// The protection check of a running program: asks, judges, and keeps the shield of the panel up to
// date.
#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <vector>

#include "app/panel.h"
#include "app/seams.h"
#include "app/state.h"
#include "check/check_rows.h"

namespace orvane {

// How the settings file stands. `path` is its path.
SettingsFile LookAtSettings(const Disk& disk, const std::string& path);

class ProtectionCheck {
 public:
  ProtectionCheck(const State& state, Panel& panel, const Seams& seams)
      : state_(state), panel_(panel), seams_(seams) {}

  // Asks all questions anew, as at the start and at a click, and judges with each answer.
  void Ask();

  // The polls begin anew: a UPS has not answered yet.
  void Start() {
    heard_ = false;
    polls_ = 0;
  }

  // To be called with each poll.
  void OnPoll();

  // To be called every few seconds, with or without polls: judges what may have changed, and asks
  // anew when a day has gone by.
  void Update();

  // The rows of this moment, in the language of this moment.
  const std::vector<CheckRow>& Rows() const { return rows_; }

  // Belongs to the window; runs when a row has changed.
  std::function<void()> Observer;

  // False when the entry of the desktop could not be changed.
  bool StartWithDesktop(bool on);

  // Shows a notification that says nothing but that it arrives.
  void SendTestNotification();

 private:
  LineFindings Line() const;

  const State& state_;
  Panel& panel_;
  Seams seams_;
  SettingsFile file_ = SettingsFile::kMissing;
  std::optional<std::chrono::sys_seconds> asked_;
  bool heard_ = false;  // since Start
  int polls_ = 0;       // since Start
  std::vector<CheckRow> rows_;
};

}  // namespace orvane
