// The curves of the history over one time axis, drawn for a stretch of time that wheel and keys
// change.
#pragma once

#include <QWidget>

#include "app/state.h"
#include "history/history.h"
#include "platform/clock.h"
#include "ui/chart_curves.h"

namespace orvane {

// Of a moment, by the local clock, to the minute.
QString TimeOf(sys_seconds time);

class HistoryChart : public QWidget {
  Q_OBJECT

 public:
  HistoryChart(const State& state, HistorySource& source, const Clock& clock, QWidget* parent);

  // The last `length` up to now, and from there along with the time.
  void ShowLast(std::chrono::seconds length);

  // An hour and more around a span of time.
  void ShowAround(sys_seconds begin, sys_seconds end);

  // The stretch that is shown.
  sys_seconds From() const { return from_; }
  sys_seconds To() const { return to_; }

  // Both lie in the stretch that is shown, and some more.
  const std::vector<Sample>& Samples() const { return samples_; }
  const std::vector<Episode>& Episodes() const { return episodes_; }

  // Reads what has been added, and goes along while the live end is in view.
  void Follow();

  // As it stands on the screen, without what only the screen shows.
  QImage Picture();

  // Time, values and episodes at a place of the widget.
  QString TextAt(double x) const;

 Q_SIGNALS:
  void Moved();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  bool event(QEvent* event) override;

 private:
  struct Lane;

  // `length` up to `to`, at most the present.
  void Show(sys_seconds to, std::chrono::seconds length);
  void Zoom(double factor, double at);
  void Read();
  std::chrono::seconds SampleWidth() const;
  QRectF Plot() const;
  TimeAxis Axis() const;
  void Draw(QPainter& painter);
  void DrawTimes(QPainter& painter) const;
  void DrawStripes(QPainter& painter) const;
  void DrawLane(QPainter& painter, const Lane& lane, const QRectF& place) const;
  void DrawLaneName(QPainter& painter, const Lane& lane, QPointF at) const;

  const State& state_;
  HistorySource& source_;
  const Clock& clock_;
  sys_seconds from_, to_;
  bool live_ = true;  // the right end is the present
  Step step_ = Step::kMinute;
  std::vector<Sample> samples_;
  std::vector<Episode> episodes_;
  PerGauge<Columns> columns_;  // of the samples
  double columns_for_ = 0;     // so many pixels; 0 when the samples are others
};

}  // namespace orvane
