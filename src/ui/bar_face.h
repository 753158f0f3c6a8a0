// The bar face of the main window: six rows of trough, bar and figure on a board.
#pragma once

#include <QWidget>
#include <functional>

#include "app/panel.h"
#include "app/state.h"

namespace orvane {

class TextLabel;

// The values that get a mark: `count` of them, from `first` on.
struct Marks {
  int first;
  int step;
  int count;

  constexpr int Value(int mark) const { return first + mark * step; }
};

// A box with a bar in it, which is cut off at the right edge.
class Trough : public QWidget {
  Q_OBJECT

 public:
  // Each mark gets a line.
  Trough(const Bar& bar, Gauge gauge, const Marks& marks, QWidget* parent);

  // The bar as it stands on the screen, in logical pixels of the trough.
  QRectF BarRect() const;

  // To be called when the bar has another width: repaints what changed.
  void Moved();

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  const Bar& bar_;
  Gauge gauge_;
  Marks marks_;
  QRectF shown_;  // the bar as it was painted last
};

class BarFace : public QWidget {
  Q_OBJECT

 public:
  // `double_click` runs at a double click on the board itself.
  BarFace(const State& state, Panel& panel, std::function<void()> double_click, QWidget* parent);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;

 private:
  struct Row;
  static const Row kRows[];

  void AddRow(const Row& row);
  void AddMarks(const Row& row);
  void ShowCaption(Gauge gauge);

  const State& state_;
  Panel& panel_;
  std::function<void()> double_click_;
  PerGauge<TextLabel*> captions_;
  PerGauge<Trough*> troughs_;
  PerGauge<TextLabel*> figures_;
};

}  // namespace orvane
