// The protection check as a window has it: rows, and what can be asked about them.
#pragma once

#include <functional>
#include <vector>

#include "app/panel.h"
#include "app/seams.h"
#include "app/state.h"
#include "check/check_rows.h"

namespace orvane {

class ProtectionView {
 public:
  ProtectionView(const State& state, Panel& panel, const Seams& seams)
      : state_(state), panel_(panel), seams_(seams) {}
  virtual ~ProtectionView() = default;

  // Asks all questions anew, as at a click, and judges with each answer.
  virtual void Ask() = 0;

  // The rows of this moment in the order of their points, in the language of this moment. A point
  // that nothing is known of has no row.
  const std::vector<CheckRow>& Rows() const { return rows_; }

  // Belongs to whoever shows the rows; runs when one has changed.
  std::function<void()> Observer;

  // Has the program start with the desktop of this session, or not any more. False when the entry
  // of the desktop could not be changed.
  bool StartWithDesktop(bool on);

  // Shows a notification in this session that says nothing but that it arrives.
  void SendTestNotification();

 protected:
  virtual void Judge() = 0;

  // Has these rows from now on, and the shield of the panel with them.
  void Show(std::vector<CheckRow> rows);

  const State& state_;
  Panel& panel_;
  Seams seams_;

 private:
  std::vector<CheckRow> rows_;
};

}  // namespace orvane
