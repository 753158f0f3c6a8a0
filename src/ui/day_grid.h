// The picture of a day: frames of the 24 hours with marks and counts in them.
#pragma once

#include <QColor>
#include <QWidget>
#include <array>

#include "app/state.h"
#include "records/day_history.h"
#include "ui/twips.h"

namespace orvane {

// A filled rectangle with an edge.
class ColourBox : public QWidget {
  Q_OBJECT

 public:
  ColourBox(const QString& name, const Place& place, const MarkColour& colour, QWidget* parent);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QColor colour_;
};

// Covers the window; the frames, the marks and the counts stand at their places on it.
class DayGrid : public QWidget {
  Q_OBJECT

 public:
  // Takes the words for the tool tips in the language of this moment.
  DayGrid(const State& state, QWidget* parent);
  ~DayGrid() override;

  // Shows the day that `history` shows.
  void Show(const DayHistory& history);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  class Count;

  // A place of the design in the grid as large as it is.
  QRect At(const Place& place) const;

  // Of a cell: its mark and its count. Made when the cell is in use for the first time.
  struct Cell {
    ColourBox* mark = nullptr;
    Count* count_label = nullptr;
  };

  void MakeCell(int cell);
  QString Sentence(int cell, int count) const;

  std::array<QString, 3> kinds_;  // of the rows
  std::array<Cell, kGridCells> cells_;
};

}  // namespace orvane
