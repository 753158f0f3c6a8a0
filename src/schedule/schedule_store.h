// Where the schedule editors read and save, and the real one: the schedule file and its tables.
#pragma once

#include <string>

#include "app/state.h"
#include "platform/disk.h"
#include "platform/host.h"
#include "schedule/schedule_tables.h"

namespace orvane {

struct ScheduleStore {
  virtual ~ScheduleStore() = default;

  // The section as its file holds it.
  virtual ScheduleEntries Schedule(const ScheduleSection& section) = 0;

  // Has the section hold from now on and writes it to the file.
  virtual void SaveSchedule(const ScheduleSection& section, const ScheduleEntries& entries) = 0;
};

class ScheduleFile : public ScheduleStore {
 public:
  ScheduleFile(State& state, Disk& disk, Host& host)
      : state_(state), disk_(disk), host_(host), path_(SchedulePath(host.ProgramDirectory())) {}

  ScheduleEntries Schedule(const ScheduleSection& section) override {
    return ReadSchedule(disk_, path_, section);
  }

  // Writes every key of the section in one replacement of the file, and takes the entries over into
  // the tables. A file that cannot be written is reported on standard error and changes nothing
  // else: the tables hold until the program ends.
  void SaveSchedule(const ScheduleSection& section, const ScheduleEntries& entries) override;

 private:
  State& state_;
  Disk& disk_;
  Host& host_;
  const std::string path_;
};

}  // namespace orvane
