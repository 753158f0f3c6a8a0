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

// This process plays an application that works in a folder; another one, which does nothing, stands
// in folders of the test's choice.
struct FileWatchTest : testing::Test {
  // A test runner leaves its own log open in here, and writes to it meanwhile.
  static void SetUpTestSuite() { close_range(STDERR_FILENO + 1, ~0U, 0); }

  FileWatchTest() { fs::current_path("/"); }

  std::string Path(const char* name) const { return folder.Path(name); }

  const test::TempFolder folder;
  std::vector<Application> one{{"writer", {getpid()}, false, {}}};
};

TEST_F(FileWatchTest, SeesWhatIsWrittenInTheFolderOfAHeldFile) {
  folder.Write("held", "text");
  folder.Write("unchanged", "text");
  std::ofstream held(Path("held"), std::ios::app);
  FileWatch watch(one);
  watch.Look();
  EXPECT_EQ(watch.Written(0), Files{});

  held << "more" << std::flush;
  watch.Look();
  EXPECT_EQ(watch.Written(0), Files{Path("held")});

  folder.Write("new", "text");
  folder.Write("aside", "text");
  fs::rename(Path("aside"), Path("in place"));
  folder.Write("scratch", "text");
  fs::remove(Path("scratch"));
  fs::create_directory(Path("folder"));
  watch.Look();
  EXPECT_EQ(watch.Written(0), (Files{Path("held"), Path("new"), Path("in place")}));
}

TEST_F(FileWatchTest, ReadingAndOpeningAreNoWritingButShowTheFolder) {
  for (const char* name : {"read", "opened"}) {
    folder.Write(name, "text");
    fs::last_write_time(Path(name), fs::file_time_type::clock::now() - std::chrono::hours(1));
  }
  FileWatch watch(one);
  std::ifstream reader(Path("read"));
  reader.get();
  std::ofstream opened(Path("opened"), std::ios::app);
  watch.Look();
  EXPECT_EQ(watch.Written(0), Files{});
  opened << "more" << std::flush;
  folder.Write("beside", "text");
  watch.Look();
  EXPECT_EQ(watch.Written(0), (Files{Path("opened"), Path("beside")}));
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
  std::ofstream held(Path("held"));
  held << "text" << std::flush;
  folder.Write("somebody's", "text");
  watch.Look();
  held << "more" << std::flush;
  held.close();
  watch.Look();
  EXPECT_EQ(watch.Written(0), Files{});
  EXPECT_EQ(watch.Written(1), Files{Path("held")});
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
