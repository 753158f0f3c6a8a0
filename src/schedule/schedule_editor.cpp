#include "schedule/schedule_editor.h"

#include <charconv>
#include <vector>

#include "platform/profile.h"
#include "platform/text.h"
#include "schedule/due_texts.h"

namespace orvane {
namespace {

// Set for the number 1 and for all that the engine takes for it: its first character alone counts.
bool IsSet(std::string_view enable) {
  if (enable.starts_with('1')) return true;
  int number = 0;
  const char* end = enable.data() + enable.size();
  return std::from_chars(enable.data(), end, number).ptr == end && number == 1;
}

}  // namespace

bool ScheduleEditor::Reads(std::string Row::*box, std::string_view text) {
  if (Trimmed(text, kTypedBlanks).empty()) return true;
  return box == &Row::date ? ReadDate(text).has_value() : ReadTime(text).has_value();
}

void ScheduleEditor::Load() {
  const ScheduleEntries entries = ReadSchedule(seams_.disk, Path(), section_);
  for (std::size_t i = 0; i < kScheduleEntries; ++i) {
    const ScheduleEntry& entry = entries[i];
    rows[i] = {IsSet(entry.enable), entry.on, entry.off, entry.date};
  }
}

void ScheduleEditor::Save() {
  ScheduleEntries entries;
  for (std::size_t i = 0; i < kScheduleEntries; ++i) {
    const Row& row = rows[i];
    entries[i] = {row.enabled ? "1" : "0", row.on, row.off, row.date};
  }
  WriteSection(entries);
  StoreSchedule(section_, entries, state_);
  seams_.forms.Unload(form_);
}

void ScheduleEditor::Cancel() {
  seams_.forms.Unload(form_);
}

std::string ScheduleEditor::Path() const {
  return SchedulePath(seams_.host.ProgramDirectory());
}

void ScheduleEditor::WriteSection(const ScheduleEntries& entries) {
  std::vector<ProfileEntry> keys;
  const auto add = [&](std::string_view suffix, std::string ScheduleEntry::*text) {
    for (std::size_t n = 1; n <= kScheduleEntries; ++n) {
      keys.push_back({ScheduleKey(n, suffix), entries[n - 1].*text});
    }
  };
  add("Enable", &ScheduleEntry::enable);
  add("On", &ScheduleEntry::on);
  if (section_.off_slots) add("Off", &ScheduleEntry::off);
  if (section_.date_slots) add("Date", &ScheduleEntry::date);
  if (!WriteProfileValues(seams_.disk, section_.name, keys, Path())) {
    seams_.host.Report("the schedule could not be written to " + Path());
  }
}

}  // namespace orvane
