// The windows of the three schedule editors: a table of seven rows of a check box and its texts.
#pragma once

#include <array>
#include <optional>
#include <vector>

#include "schedule/schedule_editor.h"
#include "ui/form_window.h"
#include "ui/words.h"

class QCheckBox;
class QGridLayout;
class QLineEdit;

namespace orvane {

// A column of text boxes.
struct ScheduleColumn {
  const char* name;
  Words head;
  std::string ScheduleEditor::Row::*box;
};

// How one editor differs from another.
struct ScheduleLook {
  const char* name;
  Form form;
  ScheduleSection section;
  Words title;
  std::array<Words, kScheduleEntries> rows;
  std::optional<Words> row_head;  // over the check boxes
  std::vector<ScheduleColumn> columns;
};

const ScheduleLook& WeekLook();
const ScheduleLook& SpecialLook();
const ScheduleLook& SelfTestLook();

class ScheduleWindow : public FormWindow {
 public:
  // Loads the editor. `look` lives longer than the window.
  ScheduleWindow(const ScheduleLook& look, const State& state, ScheduleStore& store, Forms& forms);

 private:
  void AddHeads(QGridLayout& grid);
  void AddRow(QGridLayout& grid, std::size_t row);
  QLineEdit* AddBox(const ScheduleColumn& column, std::size_t row, const QString& name);
  void Tint(QLineEdit& box, std::string ScheduleEditor::Row::*field);

  const ScheduleLook& look_;
  const State& state_;
  ScheduleEditor editor_;
};

}  // namespace orvane
