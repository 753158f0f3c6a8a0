// The history: curves, outages and what they come to.
#pragma once

#include <QWidget>

#include "app/state.h"
#include "history/history.h"
#include "platform/clock.h"

class QBoxLayout;
class QLabel;
class QTreeWidget;

namespace orvane {

class HistoryChart;

class HistoryWindow : public QWidget {
  Q_OBJECT

 public:
  // `source` outlives the window.
  HistoryWindow(const State& state, const Panel& panel, HistorySource& source, const Clock& clock);

  // The samples of the stretch that is shown (RFC 4180; times are ISO 8601 with their zone).
  QString Csv() const;

 private:
  void AddSpans(QBoxLayout* row);
  void ShowOutages();
  void ShowSums();
  void SaveAs();

  const State& state_;
  const Panel& panel_;
  HistorySource& source_;
  const Clock& clock_;
  HistoryChart* chart_;
  QTreeWidget* outages_;
  QLabel* sums_;
  QLabel* endurance_;
  std::vector<Episode> listed_;  // the outages of the list, by row
};

}  // namespace orvane
