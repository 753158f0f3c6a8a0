// How long this computer takes to go down: from the program's last step to the end of the system.
// The program leaves the moment of that step on the disk, and the next start looks up when the
// system ended.
#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "platform/disk.h"

namespace orvane {

// What the system tells of its boots. Given for tests; the defaults are the real ones.
struct BootRecords {
  std::string boot_id = "/proc/sys/kernel/random/boot_id";
  std::string stat = "/proc/stat";     // when this boot began
  std::string wtmp = "/var/log/wtmp";  // with the end of the boot before
  bool journal = true;                 // the same, where this user may read the system's journal
};

// Leaves the moment on the disk. `now`: seconds since 1970.
void NoteLastStep(Disk& disk, const std::string& program_directory, std::chrono::sys_seconds now,
                  const BootRecords& records = {});

// The time that the last way down took; nothing when none is known. Reads the system's records when
// a note of an earlier boot is there.
std::optional<std::chrono::seconds> WayDownTime(const Disk& disk,
                                                const std::string& program_directory,
                                                const BootRecords& records = {});

// Keeps that time in the place of the note.
void KeepWayDownTime(Disk& disk, const std::string& program_directory, std::chrono::seconds took);

}  // namespace orvane
