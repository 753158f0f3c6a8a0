#include "schedule/schedule_tables.h"

#include "platform/profile.h"

namespace orvane {
namespace {

constexpr std::size_t kLongestText = 1023;  // bytes

ScheduleEntries ReadSection(const ProfileFile& file, const ScheduleSection& section) {
  ScheduleEntries entries;
  for (std::size_t n = 1; n <= kScheduleEntries; ++n) {
    const auto read = [&](std::string_view suffix) {
      return ReadProfileValue(file, section.name, ScheduleKey(n, suffix), kLongestText);
    };
    ScheduleEntry& entry = entries[n - 1];
    entry.enable = read("Enable");
    entry.on = read("On");
    if (section.off_slots) entry.off = read("Off");
    if (section.date_slots) entry.date = read("Date");
  }
  return entries;
}

ProfileFile ReadFile(const Disk& disk, const std::string& path) {
  return ProfileFile::Parse(disk.Read(path).value_or(""));
}

}  // namespace

std::string SchedulePath(const std::string& program_directory) {
  return program_directory + "/systimer.ini";
}

std::string ScheduleKey(std::size_t number, std::string_view suffix) {
  return std::to_string(number).append(suffix);
}

ScheduleEntries ReadSchedule(const Disk& disk, const std::string& path,
                             const ScheduleSection& section) {
  return ReadSection(ReadFile(disk, path), section);
}

void StoreSchedule(const ScheduleSection& section, const ScheduleEntries& entries, State& state) {
  for (std::size_t n = 1; n <= kScheduleEntries; ++n) {
    const ScheduleEntry& entry = entries[n - 1];
    state.ScheduleEnable[n + section.on_slots] = entry.enable.empty() ? ' ' : entry.enable.front();
    state.ScheduleOn[n + section.on_slots] = entry.on;
    if (section.off_slots) state.ScheduleOff[n + *section.off_slots] = entry.off;
    if (section.date_slots) state.ScheduleDate[n + *section.date_slots] = entry.date;
  }
}

void LoadSchedule(const Disk& disk, const std::string& path, State& state) {
  const ProfileFile file = ReadFile(disk, path);
  for (const ScheduleSection& section : {kWeekly, kSpecialDays, kSelfTests}) {
    StoreSchedule(section, ReadSection(file, section), state);
  }
}

}  // namespace orvane
