#include "companion/file_watch.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include "companion/processes.h"
#include "support/temp_folder.h"

namespace orvane::companion {
namespace {

namespace fs = std::filesystem;
using Files = std::vector<std::string>;
using All = std::vector<Files>;

constexpr std::chrono::seconds kLimit{30};

// This process plays an application that works in a folder; another one, which does nothing, stands
// in folders of the test's choice.
struct FileWatchTest : testing::Test {
  // A test runner leaves its own log open in here, and writes to it meanwhile.
  static void SetUpTestSuite() { close_range(STDERR_FILENO + 1, ~0U, 0); }

  FileWatchTest() { fs::current_path("/"); }

  std::string Path(const char* name) const { return folder.Path(name); }

  // What is written from now on is younger than what was, by the clock that files are stamped with.
  static void PassATick() {
    const auto now = [] {
      timespec time{};
      clock_gettime(CLOCK_REALTIME_COARSE, &time);
      return std::pair(time.tv_sec, time.tv_nsec);
    };
    const auto before = now();
    while (now() == before) {
    }
  }

  static All Written(const FileWatch& watch) { return watch.Written(kLimit); }

  const test::TempFolder folder;
  std::vector<Application> one{{"writer", {getpid()}, false, {}}};
};

TEST_F(FileWatchTest, SeesWhatIsWrittenInTheFolderOfAHeldFile) {
  folder.Write("held", "text");
  folder.Write("unchanged", "text");
  std::ofstream held(Path("held"), std::ios::app);
  const FileWatch watch(one);
  EXPECT_EQ(Written(watch), All{{}});

  PassATick();
  held << "more" << std::flush;
  PassATick();
  folder.Write("new", "text");
  PassATick();
  folder.Write("aside", "text");
  fs::rename(Path("aside"), Path("in place"));
  folder.Write("scratch", "text");
  fs::remove(Path("scratch"));
  fs::create_directory(Path("folder"));
  EXPECT_EQ(Written(watch), (All{Files{Path("held"), Path("new"), Path("in place")}}));
  EXPECT_EQ(watch.Written(std::chrono::seconds(0)), All{{}}) << "beyond the limit";
}

TEST_F(FileWatchTest, ReadingAndOpeningAreNoWritingButShowTheFolder) {
  folder.Write("read", "text");
  folder.Write("opened", "text");
  FileWatch watch(one);
  std::ifstream reader(Path("read"));
  reader.get();
  std::ofstream opened(Path("opened"), std::ios::app);
  watch.Look(kLimit);
  EXPECT_EQ(Written(watch), All{{}});
  PassATick();
  opened << "more" << std::flush;
  PassATick();
  folder.Write("beside", "text");
  EXPECT_EQ(Written(watch), (All{Files{Path("opened"), Path("beside")}}));
}

TEST_F(FileWatchTest, TellsWhenItWasWrittenLast) {
  std::ofstream held(Path("held"));
  FileWatch watch(one);
  const auto start = watch.LastWrite(0);
  watch.Look(kLimit);
  EXPECT_EQ(watch.LastWrite(0), start);
  PassATick();
  held << "more" << std::flush;
  watch.Look(kLimit);
  EXPECT_GT(watch.LastWrite(0), start);
}

// However many files one process holds.
TEST_F(FileWatchTest, LookEndsAtItsLimitAndTheNextOneGoesOn) {
  std::vector<std::ofstream> held;
  for (const char* name : {"a", "b", "c"}) held.emplace_back(Path(name));
  FileWatch watch(one);
  const auto start = watch.LastWrite(0);
  PassATick();
  held.back() << "text" << std::flush;
  int looks = 0;
  for (; watch.LastWrite(0) == start && looks < 1000; ++looks) {
    watch.Look(std::chrono::milliseconds(0));
  }
  EXPECT_GT(looks, 2);
  EXPECT_LT(looks, 1000);
}

// A folder in which two applications stand does not tell which of them wrote.
TEST_F(FileWatchTest, SharedFolderCountsForTheOneThatHoldsTheFile) {
  fs::current_path(folder.Path());
  const pid_t other = fork();
  if (other == 0) {
    for (;;) pause();
  }
  const std::vector<Application> two = {{"idle", {other}, false, {}},
                                        {"writer", {getpid()}, false, {}}};
  FileWatch watch(two);
  PassATick();
  std::ofstream held(Path("aside"));
  held << "text" << std::flush;
  folder.Write("somebody's", "text");
  watch.Look(kLimit);
  held << "more" << std::flush;
  held.close();
  fs::rename(Path("aside"), Path("in place"));
  EXPECT_EQ(Written(watch), (All{Files{}, Files{Path("in place")}}));
  const ProcessTree tree;
  EXPECT_EQ(tree.Family(getpid(), {}), (std::vector{getpid(), other}));
  EXPECT_EQ(tree.Family(getpid(), {other}), std::vector{getpid()});
  const auto own = tree.Own(DirectoryOfExecutable(getpid()));
  for (const pid_t process : {getpid(), getppid(), other}) EXPECT_TRUE(own.contains(process));
  EXPECT_TRUE(IsRunning(other));
  kill(other, SIGKILL);
  waitpid(other, nullptr, 0);
  EXPECT_FALSE(IsRunning(other));
}

}  // namespace
}  // namespace orvane::companion
