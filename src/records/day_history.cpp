#include "records/day_history.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <utility>

#include "app/calendar.h"

namespace orvane {
namespace {

constexpr int kAny = -2;  // no number of a month, class or day

enum class Leap { kEither, kYes, kNo };

// A rule of a step: it fits when everything that it names is so, and says what is added to year and
// month and which day it leads to.
struct StepRule {
  int month;
  int kind;  // class of the month: of the day's own for the next day, else of the one before
  Leap leap;
  int day;
  int years;
  int months;
  int new_day;
};

// The first that fits counts. Where none does, the day is all that changes.
constexpr StepRule kNext[] = {
    {12, kAny, Leap::kEither, 31, +1, -11, 1},  //
    {kAny, 2, Leap::kEither, 30, 0, 0, 31},     //
    {kAny, 2, Leap::kEither, 31, 0, +1, 1},     //
    {kAny, 1, Leap::kEither, 30, 0, +1, 1},     //
    {kAny, 0, Leap::kYes, 28, 0, 0, 29},        //
    {kAny, 0, Leap::kYes, 29, 0, +1, 1},        //
    {kAny, 0, Leap::kNo, 28, 0, +1, 1},
};

constexpr StepRule kPrevious[] = {
    {1, kAny, Leap::kEither, 1, -1, +11, 31},  //
    {kAny, 2, Leap::kEither, 1, 0, -1, 31},    //
    {kAny, 1, Leap::kEither, 1, 0, -1, 30},    //
    {kAny, 0, Leap::kYes, 1, 0, -1, 29},       //
    {kAny, 0, Leap::kNo, 1, 0, -1, 28},
};

struct Date {
  int year;
  int month;
  int day;
};

// Counted from the end, so that a year of any length is read whole.
Date Parse(std::string_view text) {
  constexpr std::size_t kDay = 2;
  constexpr std::size_t kMonth = 5;
  constexpr std::size_t kYear = 6;
  const auto number = [text](std::size_t from, std::size_t length) {
    int value = 0;
    std::from_chars(text.data() + from, text.data() + from + length, value);
    return value;
  };
  if (text.size() < kYear) return {0, 0, 0};
  const std::size_t end = text.size();
  return {number(0, end - kYear), number(end - kMonth, 2), number(end - kDay, 2)};
}

std::string Text(const Date& date) {
  const auto two_digits = [](int value) {
    return std::string{'-', static_cast<char>('0' + value / 10 % 10),
                       static_cast<char>('0' + value % 10)};
  };
  return std::to_string(date.year) + two_digits(date.month) + two_digits(date.day);
}

bool Fits(const StepRule& rule, const Date& date, int kind) {
  return (rule.month == kAny || rule.month == date.month) &&
         (rule.kind == kAny || rule.kind == kind) &&
         (rule.leap == Leap::kEither || (rule.leap == Leap::kYes) == IsLeapYear(date.year)) &&
         rule.day == date.day;
}

Date Follow(const StepRule& rule, const Date& date) {
  return {date.year + rule.years, date.month + rule.months, rule.new_day};
}

int LastDay(const Date& date) {
  constexpr int kShortMonth = 30;
  const int kind = MonthKind(date.month);
  if (kind == 0) return IsLeapYear(date.year) ? 29 : 28;
  return kind == 2 ? kShortMonth + 1 : kShortMonth;
}

std::string InMonth(Date date, int step) {
  date.month += step;
  if (date.month < 1 || date.month > 12) {
    date.year += step;
    date.month -= 12 * step;
  }
  date.day = std::min(date.day, LastDay(date));
  return Text(date);
}

}  // namespace

std::string NextDay(std::string_view date) {
  const Date day = Parse(date);
  for (const StepRule& rule : kNext) {
    if (Fits(rule, day, MonthKind(day.month))) return Text(Follow(rule, day));
  }
  return Text({day.year, day.month, day.day + 1});
}

std::string PreviousDay(std::string_view date) {
  const Date day = Parse(date);
  for (const StepRule& rule : kPrevious) {
    if (Fits(rule, day, MonthKind(day.month - 1))) return Text(Follow(rule, day));
  }
  return Text({day.year, day.month, day.day - 1});
}

DayHistory::DayHistory(const Disk& disk, const Clock& clock, std::string path)
    : disk_(disk), clock_(clock), path_(std::move(path)) {}

void DayHistory::Load() {
  date_ = DateText(clock_.Now());
  records_.Read(disk_.Read(path_).value_or(""));
  ClearDayGrid();
  ShowDay();
}

void DayHistory::ShowNext() {
  Turn(NextDay(date_));
}

void DayHistory::ShowPrevious() {
  Turn(PreviousDay(date_));
}

void DayHistory::ShowToday() {
  Turn(DateText(clock_.Now()));
}

void DayHistory::ShowNextMonth() {
  Turn(InMonth(Parse(date_), +1));
}

void DayHistory::ShowPreviousMonth() {
  Turn(InMonth(Parse(date_), -1));
}

void DayHistory::ShowNextRecords() {
  if (const auto date = DateKey(date_)) TurnTo(records_.DateAfter(*date));
}

void DayHistory::ShowPreviousRecords() {
  if (const auto date = DateKey(date_)) TurnTo(records_.DateBefore(*date));
}

void DayHistory::TurnTo(std::uint32_t key) {
  if (key == 0) return;
  const std::string digits = std::to_string(100'000'000 + key).substr(1);
  Turn(digits.substr(0, 4) + '-' + digits.substr(4, 2) + '-' + digits.substr(6));
}

void DayHistory::Turn(std::string date) {
  date_ = std::move(date);
  ClearDayGrid();
  ShowDay();
}

void DayHistory::ShowDay() {
  // A day that no record can name, as one of the year 10000, has none.
  if (const auto date = DateKey(date_)) {
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
