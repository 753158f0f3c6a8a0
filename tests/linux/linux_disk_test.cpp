#include "platform/linux/linux_disk.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>

#include "support/temp_folder.h"

namespace orvane::test {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kRecord = "\"\n2001-02-16 09 1\"\r\n";

// Runs `act` in a process that can write no file beyond `bytes`, as on a full disk; what it
// returned.
bool OnFullDisk(rlim_t bytes, const std::function<bool()>& act) {
  const pid_t child = fork();
  if (child == 0) {
    signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{bytes, bytes};
    setrlimit(RLIMIT_FSIZE, &limit);
    _exit(act() ? 1 : 0);
  }
  int status = 0;
  EXPECT_EQ(waitpid(child, &status, 0), child);
  EXPECT_TRUE(WIFEXITED(status));
  return WEXITSTATUS(status) == 1;
}

TEST(LinuxDisk, FindsNamesInAnyCase) {
  const TempFolder folder;
  LinuxDisk disk;
  folder.Write("System.log", "one");
  EXPECT_EQ(disk.Read(folder.Path("sYSTEM.log")), "one");
  EXPECT_TRUE(disk.Exists(folder.Path("system.log")));
  EXPECT_TRUE(disk.Append(folder.Path("system.log"), " two"));
  EXPECT_TRUE(disk.AppendUnsettled(folder.Path("SYSTEM.log"), " three"));
  EXPECT_TRUE(disk.Settle(folder.Path("system.LOG")));
  EXPECT_EQ(folder.Read("System.log"), "one two three");
  EXPECT_TRUE(disk.Replace(folder.Path("SYSTEM.LOG"), "new"));
  EXPECT_EQ(folder.Read("System.log"), "new");
  // The exact spelling goes before any other, and letters beyond ASCII have a case of their own.
  folder.Write("system.log", "exact");
  EXPECT_EQ(disk.Read(folder.Path("system.log")), "exact");
  folder.Write("\xC3\x84.txt", "umlaut");
  EXPECT_FALSE(disk.Exists(folder.Path("\xC3\xA4.txt")));
  for (const bool there : {true, true, false}) {
    EXPECT_EQ(disk.Remove(folder.Path("SYSTEM.LOG")), there);
  }
}

TEST(LinuxDisk, WhatIsNoFileIsAbsent) {
  const TempFolder folder;
  LinuxDisk disk;
  ASSERT_EQ(mkfifo(folder.Path("pipe").c_str(), 0600), 0);
  fs::create_directory(folder.Path("folder"));
  for (const char* name : {"pipe", "folder", "none/none"}) {
    SCOPED_TRACE(name);
    EXPECT_FALSE(disk.Read(folder.Path(name)));
    EXPECT_FALSE(disk.Append(folder.Path(name), kRecord));
    EXPECT_FALSE(disk.AppendUnsettled(folder.Path(name), kRecord));
    EXPECT_FALSE(disk.Settle(folder.Path(name)));
    EXPECT_FALSE(disk.Replace(folder.Path(name), kRecord));
  }
  EXPECT_EQ(folder.Size(), 2u);
  // Nobody's settings, whatever its name.
  folder.Write("huge", "");
  fs::resize_file(folder.Path("huge"), 1ULL << 40);
  EXPECT_FALSE(disk.Read(folder.Path("huge")));
}

TEST(LinuxDisk, ReplacedFileKeepsModeAndLink) {
  const TempFolder folder;
  LinuxDisk disk;
  fs::create_directory(folder.Path("real"));
  const std::string real = folder.Write("real/settings", "old");
  ASSERT_EQ(chmod(real.c_str(), 0640), 0);
  fs::create_symlink("real/settings", folder.Path("Orvane.ini"));
  EXPECT_TRUE(disk.Replace(folder.Path("Orvane.ini"), "new"));
  EXPECT_TRUE(fs::is_symlink(folder.Path("Orvane.ini")));
  EXPECT_EQ(folder.Read("real/settings"), "new");
  EXPECT_EQ(fs::status(real).permissions(), fs::perms{0640});
  // A link to a file that is still to come.
  fs::create_symlink("real/later", folder.Path("System.log"));
  EXPECT_TRUE(disk.Append(folder.Path("System.log"), "line"));
  EXPECT_EQ(folder.Read("real/later"), "line");
}

TEST(LinuxDisk, FullDiskLeavesEverythingAsItWas) {
  for (const auto append : {&LinuxDisk::Append, &LinuxDisk::AppendUnsettled}) {
    const TempFolder folder;
    LinuxDisk disk;
    const std::string before(60, 'x');
    const std::string log = folder.Write("System.log", before);
    // Room for none, for a part, and for just one more record.
    for (const rlim_t room : {60, 79}) {
      EXPECT_FALSE(OnFullDisk(room, [&] { return (disk.*append)(log, kRecord); }));
    }
    EXPECT_EQ(folder.Read("System.log"), before);
    EXPECT_TRUE(OnFullDisk(80, [&] { return (disk.*append)(log, kRecord); }));
    EXPECT_FALSE(OnFullDisk(10, [&] { return (disk.*append)(folder.Path("new"), kRecord); }));
    EXPECT_FALSE(OnFullDisk(10, [&] { return disk.Replace(log, kRecord); }));
    EXPECT_EQ(folder.Read("System.log").size(), 80U);
    EXPECT_EQ(folder.Size(), 1U);
  }
}

}  // namespace
}  // namespace orvane::test
