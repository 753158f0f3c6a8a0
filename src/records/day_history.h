// The day history: which kinds of power events fell into which hour of a day, counted from the
// records of `DateRec.rec`, and the steps from day to day. This is all of the window but its
// drawing.
#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>

#include "platform/clock.h"
#include "platform/disk.h"
#include "records/day_records.h"

namespace orvane {

// The grid: 24 hours of each of the three event codes; cell = hour + 24 x code.
inline constexpr int kGridCells = 72;

// Sizes of a mark and of a one-digit count, in twips.
inline constexpr int kMarkWidth = 210;
inline constexpr int kMarkHeight = 180;
inline constexpr int kCountWidth = 120;
inline constexpr int kCountHeight = 240;

// Where a cell stands, in twips, and its row, which is its event code.
struct CellPlace {
  int row = 0;
  int mark_left = 0;
  int mark_top = 0;
  int count_left = 0;
  int count_top = 0;
};

constexpr CellPlace PlaceOf(int cell) {
  const int column = cell % 12;
  const bool afternoon = cell / 12 % 2 == 1;
  const int row = cell / 24;
  return {row, column * 600 + 255, row * 355 + (afternoon ? 3000 : 1100), column * 600 + 555,
          row * 355 + (afternoon ? 2970 : 1070)};
}

// Fill colour of the marks of a row, and of its box in the legend.
struct MarkColour {
  int red = 0;
  int green = 0;
  int blue = 0;
};

constexpr MarkColour ColourOf(int row) {
  if (row == 0) return {0, 0, 255};
  if (row == 1) return {255, 255, 0};
  return {255, 0, 0};
}

class DayHistory {
 public:
  // `path` names the file of records.
  DayHistory(const Disk& disk, const Clock& clock, std::string path);

  // Today, by a fresh reading of the file; an absent or unreadable one has no records.
  void Load();

  void ShowNext();
  void ShowPrevious();
  void ShowToday();

  // The same day of another month, or its last.
  void ShowNextMonth();
  void ShowPreviousMonth();

  // The nearest day that has records; nothing where there is none.
  void ShowNextRecords();
  void ShowPreviousRecords();

  // The day shown, as "yyyy-MM-dd".
  std::string Date() const;

  // Whether the mark and the count of a cell are to be seen.
  bool Visible(int cell) const { return grid_[static_cast<std::size_t>(cell)].visible; }

  // For a cell in use the number of its events in that hour; of cell 0 always a number, on a day
  // without its events 0.
  std::int32_t Count(int cell) const { return grid_[static_cast<std::size_t>(cell)].count; }

  const DayRecords& Records() const { return records_; }

 private:
  struct Cell {
    bool visible = false;
    std::int32_t count = 0;
  };

  void ShowDay();
  void MarkCell(int cell);
  void ClearDayGrid();
  void Turn(const std::chrono::year_month_day& day);
  void TurnTo(std::uint32_t key);

  const Disk& disk_;
  const Clock& clock_;
  std::string path_;

  DayRecords records_;               // as read by the load
  std::chrono::year_month_day day_;  // the one shown
  std::array<Cell, kGridCells> grid_{};
  // Events of cell 0, which reach its count when the day is complete. Stays at its highest value
  // when more fall into that one hour.
  std::int16_t cell_zero_count_ = 0;
};

}  // namespace orvane
