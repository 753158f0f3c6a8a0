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

struct Write {
  const char* name;
  std::string before;  // empty: no file
  bool (*act)(LinuxDisk& disk, const std::string& path);
  std::string (*after)(const std::string& before);
};

const std::string kSettings = "1,10,0,2,0,2,30,0,0,0,\"\",0\r\n";
const std::string kRecord = "\"\n2001-02-16 09 1\"\r\n";

bool Replace(LinuxDisk& disk, const std::string& path) {
  return disk.Replace(path, kSettings);
}
bool Append(LinuxDisk& disk, const std::string& path) {
  return disk.Append(path, kRecord);
}
std::string Settings(const std::string&) {
  return kSettings;
}
std::string OneMore(const std::string& before) {
  return before + kRecord;
}

TEST(KilledWriter, LeavesTheOldFileOrTheNewOne) {
  for (const Write& write : {Write{"settings", "2,30,0,5\r\n", Replace, Settings},
                             {"first record", "", Append, OneMore},
                             {"second record", kRecord, Append, OneMore}}) {
    int stops = 0;
    for (Fate fate = Fate::kKilled; fate == Fate::kKilled; ++stops) {
      SCOPED_TRACE(write.name + std::to_string(stops));
      const TempFolder folder;
      LinuxDisk disk;
      const std::string path = folder.Path("file");
      if (!write.before.empty()) folder.Write("file", write.before);
      fate = KilledAt(stops, [&] { write.act(disk, path); });
      if (fate == Fate::kNotTraced) GTEST_SKIP() << "no process may be traced here";
      const std::string found = folder.Read("file");
      ASSERT_TRUE(found == write.before || found == write.after(write.before)) << found;
      // The next one works, whatever lies about.
      ASSERT_TRUE(write.act(disk, path));
      ASSERT_EQ(folder.Read("file"), write.after(found));
      ASSERT_EQ(folder.Size(), 1U);
    }
    // Opening, writing, syncing, closing: each stops twice.
    EXPECT_GT(stops, 8);
  }
}

}  // namespace
}  // namespace orvane::test
