// The logic of the three schedule editors: `frmWeek`, `frmSpecial` and `frmSelfTest`.
#pragma once

#include <array>
#include <string>

#include "app/seams.h"
#include "app/state.h"
#include "schedule/schedule_tables.h"

namespace orvane {

class ScheduleEditor {
 public:
  // Edits `section`; `form` is the window that the two buttons unload.
  ScheduleEditor(const ScheduleSection& section, Form form, State& state, const Seams& seams)
      : section_(section), form_(form), state_(state), seams_(seams) {}

  // The controls, by index. `txtTime` 0 to 6 are switch-on times (of self-tests: their times), 7 to
  // 13 switch-off times, 14 to 20 dates; those of texts that the section does not have stay empty.
  std::array<bool, kScheduleEntries> Check1{};
  std::array<std::string, 3 * kScheduleEntries> txtTime;

  static constexpr std::size_t kOn = 0;  // first index of each kind of text
  static constexpr std::size_t kOff = kScheduleEntries;
  static constexpr std::size_t kDate = 2 * kScheduleEntries;

  const ScheduleSection& Section() const { return section_; }

  // The engine would read the text of `txtTime(index)`, or the box is empty: an empty box is no
  // slip.
  static bool Reads(std::size_t index, std::string_view text);

  // Fills the controls from the file, never from the tables.
  void Form_Load();

  // Writes every key of the section in one replacement of the file, takes the controls over into
  // the tables, and unloads the form. A file that cannot be written is reported on standard error
  // and changes nothing else: the tables hold until the program ends.
  void cmdEnter_Click();

  // Unloads the form; file and tables stay as they are.
  void cmdCancel_Click();

 private:
  std::string Path() const;
  void WriteSection(const ScheduleEntries& entries);

  ScheduleSection section_;
  Form form_;
  State& state_;
  Seams seams_;
};

}  // namespace orvane
