#include "check/protection_view.h"

#include <string>
#include <utility>

namespace orvane {

bool ProtectionView::StartWithDesktop(bool on) {
  const bool done = seams_.inspector.StartWithDesktop(on);
  Judge();
  return done;
}

void ProtectionView::SendTestNotification() {
  seams_.host.ShowNotification(
      Notice::kTest, {"Orvane", std::string(state_.Text(Message::kTestNotice)), false, false});
}

void ProtectionView::Show(std::vector<CheckRow> rows) {
  if (rows == rows_) return;
  rows_ = std::move(rows);
  const Grade worst = WorstGrade(rows_);
  const int points = OpenPoints(rows_);
  panel_.shield.Show(worst, points, CheckSummary(state_, worst, points));
  if (Observer) Observer();
}

}  // namespace orvane
