// The records of `DateRec.rec` in memory, as columns of numbers: a file of many years is read in
// the time that it takes to look at its bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <iterator>
#include <optional>
#include <string_view>
#include <vector>

namespace orvane {

// A date text of the form "yyyy-MM-dd" as a number, equal for equal texts alone; nothing for a text
// of any other form. Takes no notice of whether the calendar has that day.
std::optional<std::uint32_t> DateKey(std::string_view text);

class DayRecords {
 public:
  // Reads a whole file. Its lines end at CR LF alone, or at the end of the file; fields are cut out
  // of them by character position, whatever stands between. A line without a date of ten characters
  // or without a numeric hour and code can fall on no day and is not held.
  void Read(std::string_view bytes);

  // Lines held.
  std::size_t Count() const { return count_; }

  // Calls `found` with hour (0 to 99) and code (0 to 9) of every record of a date, in file order.
  template <typename Found>
  void ForEachOf(std::uint32_t date, Found found) const;

  // Bytes of memory that hold the records; at most 12 for each.
  std::size_t Memory() const;

 private:
  // Records in a row that have one date. They are written as time goes by, so a day is mostly one.
  struct Run {
    std::uint32_t date;
    std::uint32_t first;  // number of its first record; it reaches to the next run
  };

  const char* ReadRecords(const char* at, const char* end);
  void ReadLine(std::string_view line);
  void BeginRun(std::uint32_t date);

  std::deque<Run> runs_;
  std::vector<std::uint8_t> hours_;
  std::vector<std::uint8_t> codes_;
  std::size_t count_ = 0;  // records held, also while they are being read
};

template <typename Found>
void DayRecords::ForEachOf(std::uint32_t date, Found found) const {
  for (auto run = runs_.begin(); run != runs_.end(); ++run) {
    if (run->date != date) continue;
    const auto next = std::next(run);
    const std::size_t end = next == runs_.end() ? Count() : next->first;
    for (std::size_t i = run->first; i < end; ++i) found(int{hours_[i]}, int{codes_[i]});
  }
}

}  // namespace orvane
