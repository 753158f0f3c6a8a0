#include "schedule/schedule_store.h"

#include <vector>

#include "platform/profile.h"

namespace orvane {

void ScheduleFile::SaveSchedule(const ScheduleSection& section, const ScheduleEntries& entries) {
  std::vector<ProfileEntry> keys;
  const auto add = [&](std::string_view suffix, std::string ScheduleEntry::*text) {
    for (std::size_t n = 1; n <= kScheduleEntries; ++n) {
      keys.push_back({ScheduleKey(n, suffix), entries[n - 1].*text});
    }
  };
  add("Enable", &ScheduleEntry::enable);
  add("On", &ScheduleEntry::on);
  if (section.off_slots) add("Off", &ScheduleEntry::off);
  if (section.date_slots) add("Date", &ScheduleEntry::date);
  if (!WriteProfileValues(disk_, section.name, keys, path_)) {
    host_.Report("the schedule could not be written to " + path_);
  }
  StoreSchedule(section, entries, state_);
}

}  // namespace orvane
