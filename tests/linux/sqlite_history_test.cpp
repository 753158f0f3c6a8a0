// The history on the disk: a second reader, foreign and damaged files, and a writer that is killed
// at any call to the system.
#include <gtest/gtest.h>

#include <functional>

#include "platform/sqlite/sqlite_history.h"
#include "support/killed_process.h"
#include "support/temp_folder.h"

namespace orvane::test {
namespace {

using std::chrono::minutes;

Sample MinuteOf(int number, std::int64_t value) {
  Sample sample{sys_seconds(minutes(number)), 0, {}};
  PerGauge<std::int64_t> reading;
  for (auto& gauge : reading) gauge = value;
  sample.Add(reading);
  return sample;
}

const Episode kOutage{1,
                      EpisodeKind::kMainsFailure,
                      sys_seconds(minutes(60)),
                      sys_seconds(minutes(61)),
                      Ending::kOver,
                      10000,
                      9000,
                      4000,
                      {}};

struct SqliteHistoryTest : testing::Test {
  TempFolder folder;
  std::string path = folder.Path("History.db");
  std::vector<std::string> reports;
  std::function<void(const std::string&)> report = [this](const std::string& line) {
    reports.push_back(line);
  };

  std::vector<Sample> All(HistorySource& source, Step step) {
    return source.Samples(step, sys_seconds{}, sys_seconds::max());
  }
};

TEST_F(SqliteHistoryTest, ASecondReaderSeesEachTransaction) {
  SqliteHistory writer(path, report);
  SqliteHistory reader(path, report);
  ASSERT_TRUE(writer.Write({MinuteOf(60, 100), MinuteOf(61, 300)}, {kOutage}));
  // A minute that is there already stays, and does not count twice for its hour.
  ASSERT_TRUE(writer.Write({MinuteOf(61, 999)}, {}));
  const auto samples = All(reader, Step::kMinute);
  ASSERT_EQ(samples.size(), 2U);
  EXPECT_EQ(samples[1], MinuteOf(61, 300));
  const auto hours = All(reader, Step::kHour);
  ASSERT_EQ(hours.size(), 1U);
  EXPECT_EQ(hours[0].readings, 2);
  EXPECT_EQ(hours[0].values[Gauge::kInput], (Spread{100, 400, 300}));
  EXPECT_EQ(reader.Episodes(sys_seconds{}, sys_seconds::max()), std::vector{kOutage});
  EXPECT_EQ(reader.LastEpisode(), 1);
  EXPECT_TRUE(reports.empty());
}

TEST_F(SqliteHistoryTest, ADamagedFileIsPutAsideAndANewOneBegun) {
  folder.Write("History.db", std::string(5000, 'x'));
  SqliteHistory history(path, report);
  EXPECT_TRUE(history.Write({MinuteOf(60, 100)}, {}));
  EXPECT_EQ(All(history, Step::kMinute).size(), 1U);
  EXPECT_EQ(folder.Read("History.db.damaged"), std::string(5000, 'x'));
  EXPECT_EQ(reports.size(), 1U);
}

TEST_F(SqliteHistoryTest, AFolderThatIsNotThereCostsTheHistoryAlone) {
  SqliteHistory history(folder.Path("none/History.db"), report);
  EXPECT_FALSE(history.Write({MinuteOf(60, 100)}, {}));
  EXPECT_FALSE(history.Write({MinuteOf(60, 100)}, {}));
  EXPECT_TRUE(All(history, Step::kMinute).empty());
  EXPECT_EQ(reports.size(), 1U);
}

TEST_F(SqliteHistoryTest, AKilledWriterLeavesWholeTransactions) {
  int stops = 0;
  for (Fate fate = Fate::kKilled; fate == Fate::kKilled; ++stops) {
    SCOPED_TRACE(stops);
    const TempFolder place;
    const std::string file = place.Path("History.db");
    fate = KilledAt(stops, [&] {
      SqliteHistory history(file, report);
      static_cast<void>(history.Write({MinuteOf(60, 100), MinuteOf(61, 300)}, {kOutage}));
    });
    if (fate == Fate::kNotTraced) GTEST_SKIP() << "no process may be traced here";
    SqliteHistory history(file, report);
    const std::size_t found = All(history, Step::kMinute).size();
    ASSERT_TRUE(found == 0 || found == 2) << found;
    ASSERT_EQ(history.LastEpisode(), found / 2);
    ASSERT_EQ(All(history, Step::kHour).size(), found / 2);
    ASSERT_TRUE(history.Write({MinuteOf(62, 1)}, {}));
    ASSERT_TRUE(reports.empty()) << reports[0];
  }
  EXPECT_GT(stops, 50);
}

}  // namespace
}  // namespace orvane::test
