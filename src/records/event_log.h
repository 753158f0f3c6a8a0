// The event log as its window shows and clears it. This is all of the window but its list.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "app/state.h"
#include "platform/dialogs.h"
#include "platform/disk.h"

namespace orvane {

class EventLog {
 public:
  // `path` names `System.log`.
  EventLog(const State& state, Disk& disk, Dialogs& dialogs, std::string path);

  // Reads the file anew; of one that cannot be read, nothing. True when the window is to put its
  // English captions in place: it keeps the Chinese ones also where there is no log file.
  bool Load();

  // The lines, as they stood at the load and without their ends. They stay while the file grows.
  const std::vector<std::string_view>& Lines() const { return lines_; }

  // With lines and the user's Yes: deletes the file, whether or not that can be done, and forgets
  // the lines. False when everything stays.
  bool Clear();

 private:
  void Forget();

  const State& state_;
  Disk& disk_;
  Dialogs& dialogs_;
  std::string path_;

  std::string bytes_;  // the file, as it stood at the load
  std::vector<std::string_view> lines_;
};

}  // namespace orvane
