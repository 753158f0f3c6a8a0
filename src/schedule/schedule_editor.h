// The logic of the three schedule editors: the week, the special days and the self-tests.
#pragma once

#include <array>
#include <string>

#include "app/seams.h"
#include "app/state.h"
#include "schedule/schedule_tables.h"

namespace orvane {

class ScheduleEditor {
 public:
  // Edits `section`; `form` is the window that Save and Cancel unload.
  ScheduleEditor(const ScheduleSection& section, Form form, State& state, const Seams& seams)
      : section_(section), form_(form), state_(state), seams_(seams) {}

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

  // Writes every key of the section in one replacement of the file, takes the controls over into
  // the tables, and unloads the form. A file that cannot be written is reported on standard error
  // and changes nothing else: the tables hold until the program ends.
  void Save();

  // Unloads the form; file and tables stay as they are.
  void Cancel();

 private:
  std::string Path() const;
  void WriteSection(const ScheduleEntries& entries);

  ScheduleSection section_;
  Form form_;
  State& state_;
  Seams seams_;
};

}  // namespace orvane
