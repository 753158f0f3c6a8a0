// A save that is killed at every system call it makes, before the call and after it.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>
#include <string>
#include <vector>

#include "app/settings.h"
#include "linux/temp_folder.h"
#include "platform/linux/linux_disk.h"
#include "platform/profile.h"
#include "schedule/schedule_tables.h"

namespace orvane::test {
namespace {

using Save = std::function<bool(Disk& disk)>;

// Runs the save in a process of its own and kills that at its `count`th stop, of which each system
// call makes two. False when the process came to its end before.
bool KillAt(int count, const Save& save) {
  const pid_t child = fork();
  if (child == 0) {
    ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
    raise(SIGSTOP);
    LinuxDisk disk;
    _exit(save(disk) ? 0 : 1);
  }
  int status = 0;
  waitpid(child, &status, 0);
  for (int stop = 0; stop < count; ++stop) {
    ptrace(PTRACE_SYSCALL, child, nullptr, nullptr);
    waitpid(child, &status, 0);
    if (WIFSTOPPED(status)) continue;
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    return false;
  }
  kill(child, SIGKILL);
  waitpid(child, &status, 0);
  return true;
}

class PowerCutTest : public testing::Test {
 protected:
  void KillEverywhere(const std::string& path, const std::string& before, const Save& save) {
    LinuxDisk disk;
    ASSERT_TRUE(disk.Replace(path, before));
    ASSERT_TRUE(save(disk));
    const std::string after = disk.Read(path).value_or("");
    ASSERT_NE(after, before);

    int old_files = 0;
    int new_files = 0;
    for (int count = 1;; ++count) {
      ASSERT_TRUE(disk.Replace(path, before));
      const bool killed = KillAt(count, save);
      const std::string content = disk.Read(path).value_or("(gone)");
      EXPECT_TRUE(content == before || content == after) << "stop " << count << ": " << content;
      if (!killed) break;
      ++(content == before ? old_files : new_files);
      // What was left lying does not hinder the next save.
      EXPECT_TRUE(save(disk));
      EXPECT_EQ(disk.Read(path), after);
    }
    // Open, write, sync, rename, before and after.
    EXPECT_GT(old_files, 8);
    EXPECT_GT(new_files, 1);
  }

  TempFolder folder;
};

TEST_F(PowerCutTest, SettingsAreTheOldOrTheNewOnes) {
  const std::string path = folder.Path("Orvane.ini");
  State state;
  state.Settings = {2, 30, 0, 5, 0, 2, 30, 1, 3, 110, 1};
  state.PhoneCode = "119";
  KillEverywhere(path, "1,0,0,0,0,0,0,0,1,0,\"\",0\r\n",
                 [&](Disk& disk) { return SaveSettings(disk, path, state); });
}

TEST_F(PowerCutTest, ScheduleIsTheOldOrTheNewOne) {
  const std::string path = folder.Path("systimer.ini");
  std::vector<ProfileEntry> entries;
  for (const char* suffix : {"Enable", "On", "Off", "Date"}) {
    for (std::size_t n = 1; n <= kScheduleEntries; ++n) {
      entries.push_back({ScheduleKey(n, suffix), "new"});
    }
  }
  KillEverywhere(path, "[weekly]\r\n1On=8:00\r\n[Special]\r\n1On=9:00\r\n", [&](Disk& disk) {
    return WritePrivateProfileStrings(disk, kSpecialDays.name, entries, path);
  });
}

}  // namespace
}  // namespace orvane::test
