// The schedule: `systimer.ini` on disk, and the four tables of the state that the engine reads.
//
// Each of three sections has seven entries. Entry n has the keys nEnable and nOn, and where its
// section says so nOff and nDate. In the tables
//   ScheduleEnable, ScheduleOn  hold the week in slots 1 to 7, special days in 8 to 14, self-tests
//                               in 15 to 21;
//   ScheduleOff                 holds the week in 1 to 7, special days in 8 to 14;
//   ScheduleDate                holds special days in 1 to 7, self-tests in 8 to 14.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "app/state.h"
#include "platform/disk.h"

namespace orvane {

inline constexpr std::size_t kScheduleEntries = 7;

// Where a section's entries stand: entry n of it, counted from 1, has the slot n plus the offset.
struct ScheduleSection {
  std::string_view name;
  std::size_t on_slots;                   // offset in ScheduleEnable and ScheduleOn
  std::optional<std::size_t> off_slots;   // offset in ScheduleOff; none: no switch-off times
  std::optional<std::size_t> date_slots;  // offset in ScheduleDate; none: no dates
};

inline constexpr ScheduleSection kWeekly{"weekly", 0, 0, std::nullopt};
inline constexpr ScheduleSection kSpecialDays{"Special", 7, 7, 0};
inline constexpr ScheduleSection kSelfTests{"SelfTestToLow", 14, std::nullopt, 7};

// The texts of one entry; those that its section does not have stay empty.
struct ScheduleEntry {
  std::string enable;
  std::string on;
  std::string off;
  std::string date;
};

// By entry number less 1.
using ScheduleEntries = std::array<ScheduleEntry, kScheduleEntries>;

// The path of the schedule file in the program's directory, which is given without a slash at the
// end.
std::string SchedulePath(const std::string& program_directory);

// The key of entry `number`, 1 to 7: "3On".
std::string ScheduleKey(std::size_t number, std::string_view suffix);

// The section as the file holds it; an absent key, section or file gives empty texts, and a text of
// more than 1023 bytes is cut.
ScheduleEntries ReadSchedule(const Disk& disk, const std::string& path,
                             const ScheduleSection& section);

// Takes the entries over into the section's slots of the tables. ScheduleEnable gets the first
// character of `enable`, or a blank.
void StoreSchedule(const ScheduleSection& section, const ScheduleEntries& entries, State& state);

// Fills the tables from the file; an absent file leaves them blank and empty.
void LoadSchedule(const Disk& disk, const std::string& path, State& state);

}  // namespace orvane
