// The logic of the three schedule editors: the week, the special days and the self-tests.
#pragma once

#include <array>
#include <string>

#include "platform/forms.h"
#include "schedule/schedule_store.h"

namespace orvane {

class ScheduleEditor {
 public:
  // Edits `section`; `form` is the window that Save and Cancel unload.
  ScheduleEditor(const ScheduleSection& section, Form form, ScheduleStore& store, Forms& forms)
      : section_(section), form_(form), store_(store), forms_(forms) {}

  // What the controls of a row hold. Texts that the section does not have stay empty.
  struct Row {
    bool enabled = false;
    std::string on;  // of a self-test its time
    std::string off;
    std::string date;
  };
  std::array<Row, kScheduleEntries> rows;

  // The engine would read this as a time, or for `date` as a date, or the text is empty: an empty
  // box is no slip.
  static bool Reads(std::string Row::*box, std::string_view text);

  // Fills the controls from the file, never from the tables.
  void Load();

  // Saves what the controls hold, and unloads the form.
  void Save();

  // Unloads the form; file and tables stay as they are.
  void Cancel();

 private:
  ScheduleSection section_;
  Form form_;
  ScheduleStore& store_;
  Forms& forms_;
};

}  // namespace orvane
