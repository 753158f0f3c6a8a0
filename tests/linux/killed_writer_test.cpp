// A writer that is killed at any moment. The kernel stops it before and after every call that it
// makes, and there it dies; between two calls nothing happens to a file.
#include <gtest/gtest.h>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <functional>

#include "linux/temp_folder.h"
#include "platform/linux/linux_disk.h"

namespace orvane::test {
namespace {

enum class Fate { kKilled, kFinished, kNotTraced };

// Runs `act` in a process that is killed at its stop number `stops`, if it comes that far.
Fate KilledAt(int stops, const std::function<void()>& act) {
  const pid_t child = fork();
  if (child == 0) {
    if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) _exit(2);
    raise(SIGSTOP);
    act();
    _exit(0);
  }
  int status = 0;
  waitpid(child, &status, 0);
  if (!WIFSTOPPED(status)) return Fate::kNotTraced;
  for (int i = 0; i < stops; ++i) {
    ptrace(PTRACE_SYSCALL, child, nullptr, nullptr);
    waitpid(child, &status, 0);
    if (WIFEXITED(status)) return Fate::kFinished;
  }
  kill(child, SIGKILL);
  waitpid(child, &status, 0);
  return Fate::kKilled;
}

// Kills the writer at each of its stops in turn and lets `check` look at what it left.
void AtEveryMoment(const std::function<void(const TempFolder&)>& prepare,
                   const std::function<void(const TempFolder&)>& act,
                   const std::function<void(const TempFolder&)>& check) {
  int stops = 0;
  for (Fate fate = Fate::kKilled; fate == Fate::kKilled; ++stops) {
    const TempFolder folder;
    prepare(folder);
    fate = KilledAt(stops, [&] { act(folder); });
    if (fate == Fate::kNotTraced) GTEST_SKIP() << "no process may be traced here";
    SCOPED_TRACE(stops);
    check(folder);
    if (testing::Test::HasFailure()) return;
  }
  // Opening, writing, syncing, closing: each stops twice.
  EXPECT_GT(stops, 8);
}

constexpr std::string_view kOld = "2,30,0,5,0,2,30,1,3,110,\"119\",1\r\n";
constexpr std::string_view kNew = "1,10,0,2,0,2,30,0,0,0,\"\",0\r\n";
constexpr std::string_view kRecord = "\"\n2001-02-16 09 1\"\r\n";

TEST(KilledWriter, LeavesTheOldFileOrTheNewOne) {
  const auto act = [](const TempFolder& folder) {
    LinuxDisk().Replace(folder.Path("Orvane.ini"), kNew);
  };
  const auto check = [](const TempFolder& folder) {
    const std::string found = folder.Read("Orvane.ini");
    EXPECT_TRUE(found == kOld || found == kNew) << found;
    // The next save works, whatever lies about.
    EXPECT_TRUE(LinuxDisk().Replace(folder.Path("Orvane.ini"), kOld));
    EXPECT_EQ(folder.Read("Orvane.ini"), kOld);
    EXPECT_EQ(folder.Size(), 1U);
  };
  AtEveryMoment([](const TempFolder& folder) { folder.Write("Orvane.ini", kOld); }, act, check);
}

TEST(KilledWriter, LeavesWholeRecordsOnly) {
  for (const std::string before : {"", kRecord.data()}) {
    SCOPED_TRACE(before.size());
    const auto prepare = [&](const TempFolder& folder) {
      if (!before.empty()) folder.Write("DateRec.rec", before);
    };
    const auto act = [](const TempFolder& folder) {
      LinuxDisk().Append(folder.Path("DateRec.rec"), kRecord);
    };
    const auto check = [&](const TempFolder& folder) {
      const std::string found = folder.Read("DateRec.rec");
      EXPECT_TRUE(found == before || found == before + std::string(kRecord)) << found;
      EXPECT_TRUE(LinuxDisk().Append(folder.Path("DateRec.rec"), kRecord));
      EXPECT_EQ(folder.Read("DateRec.rec"), found + std::string(kRecord));
    };
    AtEveryMoment(prepare, act, check);
  }
}

}  // namespace
}  // namespace orvane::test
