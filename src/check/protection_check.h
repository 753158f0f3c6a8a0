// The protection check of a running program: asks, judges, and keeps the shield of the panel up to
// date.
#pragma once

#include <chrono>
#include <optional>

#include "check/protection_view.h"
#include "platform/disk.h"

namespace orvane {

// How the settings file stands. `path` is its path.
SettingsFile LookAtSettings(const Disk& disk, const std::string& path);

class ProtectionCheck : public ProtectionView {
 public:
  using ProtectionView::ProtectionView;

  void Ask() override;

  // The polls begin anew: a UPS has not answered yet, and the questions are asked with the next
  // Update, when the window stands.
  void Start();

  // To be called with each poll.
  void OnPoll();

  // To be called every few seconds, with or without polls: judges what may have changed, and asks
  // anew behind a start and when a day has gone by.
  void Update();

 private:
  void Judge() override;
  LineFindings Line() const;

  SettingsFile file_ = SettingsFile::kMissing;
  std::optional<std::chrono::sys_seconds> asked_;
  bool heard_ = false;  // since Start
  int polls_ = 0;       // since Start
};

}  // namespace orvane
