// The day history: what is read, where it stands, and the steps from day to day.
#include "records/day_history.h"

#include <gtest/gtest.h>

#include <map>

#include "support/world.h"

namespace orvane::test {
namespace {

constexpr const char* kPath = "/prog/DateRec.rec";

std::string Record(const std::string& date, const std::string& hour, const std::string& code) {
  return "\"\n" + date + ' ' + hour + ' ' + code + "\"\r\n";
}

std::string Times(int count, const std::string& record) {
  std::string records;
  while (count-- > 0) records += record;
  return records;
}

// A day history on a file of its own, loaded on 2001-02-16.
struct History {
  MemoryDisk disk;
  FakeTime time;
  DayHistory form{disk, time, kPath};

  explicit History(const std::string& file, LocalTime now = {2001, 2, 16, 12, 0, 0}) : time(now) {
    disk.files[kPath] = file;
    form.Load();
  }

  // Cells in use, with their counts.
  using Marks = std::map<int, int>;
  Marks Shown() const {
    Marks marks;
    for (int cell = 0; cell < kGridCells; ++cell) {
      if (form.Visible(cell)) marks[cell] = form.Count(cell);
    }
    return marks;
  }
};

using Marks = History::Marks;

TEST(DayHistory, CountsTheGoodRecordsOfADay) {
  const std::string today = "2001-02-16";
  const std::string zero = Record(today, "00", "0");
  const std::string good = Record(today, "14", "1");
  const struct {
    const char* name;
    std::string file;
    Marks marks;
  } cases[] = {
      {"empty file", "", {}},
      {"the neighbours alone",
       Record("2001-02-15", "00", "0") + Record("2001-02-17", "23", "2"),
       {}},
      {"first and last cell", zero + Record(today, "23", "2"), {{0, 1}, {71, 1}}},
      {"days in any order",
       zero + Record("2001-02-15", "00", "0") + zero + Record(today, "01", "0") +
           Record("2001-02-15", "01", "0") + Record(today, "01", "0"),
       {{0, 2}, {1, 2}}},
      {"half a record swallows the next", "\"\n2001-02" + good + good, {{38, 1}}},
      {"line feeds for line ends: the first of one long line",
       "\"\n2001-02-16 14 1\"\n\"\n2001-02-16 14 1\"\n",
       {{38, 1}}},
      {"characters, not bytes, are counted",
       "अ\n2001-02-16 14 1”\r\né\n2001-02-16 14 1”\r\n\U00020000\n2001-02-16 14 1”\r\n"
       "\"é2001-02-16 14 1\r\n\"\n2001-02-16é14 1\r\n\"\n2001-02-16 14é1" +
           std::string(1000, 'x') + "\r\n",
       {{38, 6}}},
      {"a byte of no character counts as one", "\xFF\n2001-02-16 14 1\"\r\n" + good, {{38, 2}}},
      {"cell 0 keeps its highest count",
       Times(32770, zero) + Times(32770, Record(today, "01", "0")),
       {{0, 32767}, {1, 32770}}},
      {"signs beside the digits", Record(today, "0:", "1") + Record(today, "1/", "1"), {}},
      {"outside the grid",
       Record(today, "00", "3") + Record(today, "24", "2") + Record(today, "99", "9") + good,
       {{38, 1}}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const History history(c.file);
    EXPECT_EQ(history.form.Date(), today);
    EXPECT_EQ(history.Shown(), c.marks);
    // Cell 0 has a count on every day.
    EXPECT_EQ(history.form.Count(0), c.marks.contains(0) ? c.marks.at(0) : 0);
  }
}

TEST(DayHistory, StepsShowOtherDaysOfTheFileAsItWasAtTheLoad) {
  History history(Times(3, Record("2001-02-16", "00", "0")) + Record("2001-02-17", "05", "1") +
                  Record("2001-02-17", "06", "2") + Record("2001-02-18", "00", "0"));
  history.disk.files[kPath] += Record("2001-02-17", "00", "1");
  history.form.ShowNext();
  EXPECT_EQ(history.form.Date(), "2001-02-17");
  EXPECT_EQ(history.Shown(), (Marks{{29, 1}, {54, 1}}));
  EXPECT_EQ(history.form.Count(0), 0);
  history.form.ShowNext();
  EXPECT_EQ(history.Shown(), (Marks{{0, 1}}));
  history.form.ShowPrevious();
  history.form.ShowPrevious();
  EXPECT_EQ(history.form.Date(), "2001-02-16");
  EXPECT_EQ(history.Shown(), (Marks{{0, 3}}));
  history.time.SetWall({2001, 2, 17, 8, 0, 0});
  history.form.Load();
  EXPECT_EQ(history.Shown(), (Marks{{24, 1}, {29, 1}, {54, 1}}));
  history.disk.files.clear();
  history.form.Load();
  EXPECT_EQ(history.form.Date(), "2001-02-17");
  EXPECT_EQ(history.Shown(), Marks{});
}

}  // namespace
}  // namespace orvane::test
