#include "records/day_history.h"

#include <algorithm>
#include <chrono>
#include <limits>
#include <utility>

#include "app/calendar.h"

namespace orvane {
namespace {

using std::chrono::days;
using std::chrono::months;
using std::chrono::sys_days;
using std::chrono::year_month_day;

// The same day of another month, or its last.
year_month_day InMonth(const year_month_day& day, months step) {
  const auto month = day.year() / day.month() + step;
  return std::min(month / day.day(), year_month_day{month / std::chrono::last});
}

}  // namespace

DayHistory::DayHistory(const Disk& disk, const Clock& clock, std::string path)
    : disk_(disk), clock_(clock), path_(std::move(path)) {}

void DayHistory::Load() {
  records_.Read(disk_.Read(path_).value_or(""));
  ShowToday();
}

void DayHistory::ShowNext() {
  Turn(sys_days{day_} + days{1});
}

void DayHistory::ShowPrevious() {
  Turn(sys_days{day_} - days{1});
}

void DayHistory::ShowToday() {
  Turn(DateOf(clock_.Now()));
}

void DayHistory::ShowNextMonth() {
  Turn(InMonth(day_, months{1}));
}

void DayHistory::ShowPreviousMonth() {
  Turn(InMonth(day_, months{-1}));
}

void DayHistory::ShowNextRecords() {
  if (const auto date = DateKey(Date())) TurnTo(records_.DateAfter(*date));
}

void DayHistory::ShowPreviousRecords() {
  if (const auto date = DateKey(Date())) TurnTo(records_.DateBefore(*date));
}

void DayHistory::TurnTo(std::uint32_t key) {
  if (key == 0) return;
  Turn(DateOf({.year = static_cast<int>(key / 10000),
               .month = static_cast<int>(key / 100 % 100),
               .day = static_cast<int>(key % 100)}));
}

void DayHistory::Turn(const year_month_day& day) {
  day_ = day;
  ClearDayGrid();
  ShowDay();
}

std::string DayHistory::Date() const {
  return DateText(day_);
}

void DayHistory::ShowDay() {
  // A day that no record can name, as one of the year 10000, has none.
  if (const auto date = DateKey(Date())) {
    records_.ForEachOf(*date, [this](int hour, int code) { MarkCell(hour + 24 * code); });
  }
  grid_[0].count = cell_zero_count_;
}

void DayHistory::MarkCell(int cell) {
  if (cell >= kGridCells) return;
  Cell& marked = grid_[static_cast<std::size_t>(cell)];
  if (cell == 0) {
    if (cell_zero_count_ < std::numeric_limits<std::int16_t>::max()) ++cell_zero_count_;
  } else {
    ++marked.count;
  }
  marked.visible = true;
}

void DayHistory::ClearDayGrid() {
  cell_zero_count_ = 0;
  grid_ = {};
}

}  // namespace orvane
