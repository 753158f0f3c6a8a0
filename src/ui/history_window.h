// The history: curves, outages and what they come to.
#pragma once

#include "app/state.h"
#include "history/history.h"
#include "platform/clock.h"
#include "platform/dialogs.h"
#include "ui/form_dialog.h"

class QBoxLayout;
class QLabel;
class QPushButton;
class QTreeWidget;

namespace orvane {

class HistoryChart;

class HistoryWindow : public FormDialog {
  Q_OBJECT

 public:
  // `source` outlives the window.
  HistoryWindow(const State& state, const Panel& panel, HistorySource& source, const Clock& clock,
                Dialogs& dialogs);

  // Writes what is shown: the picture as PNG where the name ends so, else the samples as CSV (RFC
  // 4180; times are ISO 8601 with their zone). False when that failed.
  bool Save(const QString& path) const;

 private:
  void AddSpans(QBoxLayout* row);
  void MarkSpan();
  void Follow();
  void ReadOutages();
  QStringList Texts(const Episode& outage) const;
  void ShowSums();
  QString Csv() const;
  void SaveAs();

  const State& state_;
  const Panel& panel_;
  HistorySource& source_;
  const Clock& clock_;
  Dialogs& dialogs_;
  HistoryChart* chart_;
  std::vector<QPushButton*> spans_;
  QTreeWidget* outages_;
  QLabel* sums_;
  QLabel* endurance_;
  std::vector<Episode> listed_;      // the outages of the list, the newest first
  std::optional<sys_seconds> read_;  // when they were read last
};

}  // namespace orvane
