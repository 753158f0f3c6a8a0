// The records of `DateRec.rec` in memory.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace orvane {

// A date text of the form "yyyy-MM-dd" as a number, equal for equal texts alone and greater for a
// later date; nothing for a text of any other form. Takes no notice of whether the calendar has
// that day.
std::optional<std::uint32_t> DateKey(std::string_view text);

class DayRecords {
 public:
  // Reads a whole file. Its lines end at CR LF alone, or at the end of the file; fields are cut out
  // of them by character position, whatever stands between. A line without a date of ten characters
  // or without a numeric hour and code can fall on no day and is not held.
  void Read(std::string_view bytes);

  // Lines held; each takes 8 bytes of memory.
  std::size_t Count() const { return records_.size(); }

  // Calls `found` with hour (0 to 99) and code (0 to 9) of every record of a date, in file order.
  template <typename Found>
  void ForEachOf(std::uint32_t date, Found found) const;

  // The date nearest before or after `date` that has records; 0 where there is none.
  std::uint32_t DateBefore(std::uint32_t date) const;
  std::uint32_t DateAfter(std::uint32_t date) const;

 private:
  struct Record {
    std::uint32_t date;
    std::uint8_t hour;
    std::uint8_t code;
  };

  static bool Earlier(const Record& a, const Record& b) { return a.date < b.date; }
  void ReadLine(std::string_view line);

  std::vector<Record> records_;  // by date, those of a date in file order
};

template <typename Found>
void DayRecords::ForEachOf(std::uint32_t date, Found found) const {
  const auto [first, last] =
      std::equal_range(records_.begin(), records_.end(), Record{date, 0, 0}, Earlier);
  for (auto record = first; record != last; ++record) found(int{record->hour}, int{record->code});
}

}  // namespace orvane
