#include "schedule/schedule_editor.h"

#include <charconv>

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
  const ScheduleEntries entries = store_.Schedule(section_);
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
  store_.SaveSchedule(section_, entries);
  forms_.Unload(form_);
}

void ScheduleEditor::Cancel() {
  forms_.Unload(form_);
}

}  // namespace orvane
