// The day history, one day at a time.
#pragma once

#include <string>

#include "app/state.h"
#include "platform/clock.h"
#include "platform/disk.h"
#include "records/day_history.h"
#include "ui/form_dialog.h"

namespace orvane {

class DayGrid;
class TextLabel;

class DayHistoryWindow : public FormDialog {
  Q_OBJECT

 public:
  // Loads the form. `path` names `DateRec.rec`.
  DayHistoryWindow(const State& state, const Disk& disk, const Clock& clock,
                   const std::string& path);

 private:
  void AddLegend(const State& state);
  void AddDay(const State& state);
  void AddButtons(const State& state);
  void ShowDay();

  DayHistory history_;
  DayGrid* grid_;
  TextLabel* date_ = nullptr;
};

}  // namespace orvane
