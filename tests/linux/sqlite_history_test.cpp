// The history on the disk: a second reader, foreign and damaged files, and a writer that is killed
// at any call to the system.
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
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

// Whoever may do anything counts as nobody meanwhile, and files may not grow beyond `size`.
struct Bounds {
  explicit Bounds(rlim_t size) {
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit bound{size, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &bound);
    signal(SIGXFSZ, SIG_IGN);
    mighty = geteuid() == 0 && seteuid(65534) == 0;
  }
  ~Bounds() {
    if (mighty && seteuid(0) != 0) std::abort();
    setrlimit(RLIMIT_FSIZE, &before);
  }
  rlimit before{};
  bool mighty = false;
};

TEST_F(SqliteHistoryTest, AFileThatDoesNotTakeItIsToldOnceAndLosesNothing) {
  const struct {
    const char* name;
    const char* told;
    const char* sql;  // of a stranger, who stays
    mode_t mode;
    rlim_t room;
    std::size_t seen;  // minutes that the window shows meanwhile
    bool after;        // whether it is written once the trouble is over
  } kCases[] = {
      {"locked", "database is locked", "BEGIN EXCLUSIVE", 0666, RLIM_INFINITY, 1, true},
      {"full", "disk I/O error", "SELECT * FROM minutes", 0666, 4096, 1, true},
      {"read-only", "readonly", "SELECT 1", 0444, RLIM_INFINITY, 1, true},
      {"newer", "is from a newer version", "PRAGMA user_version=99", 0666, RLIM_INFINITY, 0, false},
      {"of another program", "is not a history", "PRAGMA application_id=7", 0666, RLIM_INFINITY, 0,
       false},
  };
  for (const auto& [name, told, sql, mode, room, seen, after] : kCases) {
    SCOPED_TRACE(name);
    reports.clear();
    const TempFolder place;
    const std::string file = place.Path("History.db");
    ASSERT_TRUE(SqliteHistory(file, report).Write({MinuteOf(60, 100)}, {kOutage}));
    sqlite3* stranger = nullptr;
    ASSERT_EQ(sqlite3_open(file.c_str(), &stranger), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(stranger, sql, nullptr, nullptr, nullptr), SQLITE_OK);
    chmod(place.Path().c_str(), 0777);
    for (const char* part : {"", "-wal", "-shm"}) chmod((file + part).c_str(), mode);
    SqliteHistory history(file, report);
    {
      const Bounds bounds(room);
      EXPECT_FALSE(history.Write({MinuteOf(61, 300)}, {}));
      EXPECT_FALSE(history.Write({MinuteOf(61, 300)}, {}));
      EXPECT_EQ(All(history, Step::kMinute).size(), seen);
    }
    sqlite3_close(stranger);
    for (const char* part : {"", "-wal", "-shm"}) chmod((file + part).c_str(), 0666);
    ASSERT_EQ(reports.size(), 1U);
    EXPECT_NE(reports[0].find(told), std::string::npos) << reports[0];
    EXPECT_EQ(history.Write({MinuteOf(61, 300)}, {}), after);
    EXPECT_EQ(All(history, Step::kMinute).size(), after ? 2U : 0U);
    EXPECT_FALSE(std::filesystem::exists(file + ".damaged"));
  }
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
