// What goes over the bus by name.
#pragma once

#include <optional>
#include <string_view>

#include "frame/engine.h"
#include "platform/forms.h"
#include "schedule/schedule_tables.h"

namespace orvane {

struct JournalName {
  std::string_view name;
  Journal journal;
};
inline constexpr JournalName kJournalNames[] = {
    {"log", Journal::kLog}, {"days", Journal::kDayRecords}, {"report", Journal::kReport}};

inline std::optional<Journal> JournalNamed(std::string_view name) {
  for (const JournalName& row : kJournalNames) {
    if (row.name == name) return row.journal;
  }
  return std::nullopt;
}

// Null where there is none.
inline const ScheduleSection* SectionNamed(std::string_view name) {
  static constexpr ScheduleSection kSections[] = {kWeekly, kSpecialDays, kSelfTests};
  for (const ScheduleSection& section : kSections) {
    if (section.name == name) return &section;
  }
  return nullptr;
}

// The forms that an engine shows, hides and unloads.
struct FormName {
  const char* name;
  Form form;
};
inline constexpr FormName kFormNames[] = {
    {"main", Form::kMain}, {"alert", Form::kAlert}, {"settings", Form::kSettings}};

inline const char* NameOf(Form form) {
  for (const FormName& row : kFormNames) {
    if (row.form == form) return row.name;
  }
  return "";
}

}  // namespace orvane
