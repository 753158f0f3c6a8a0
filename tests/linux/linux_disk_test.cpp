#include "platform/linux/linux_disk.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <functional>
#include <thread>

#include "linux/temp_folder.h"

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

TEST(LinuxDisk, AppendsUnsettledAsItAppends) {
  const TempFolder folder;
  LinuxDisk disk;
  const std::string log = folder.Path("DateRec.rec");
  EXPECT_FALSE(disk.Settle(log));
  EXPECT_TRUE(disk.AppendUnsettled(log, kRecord));
  EXPECT_TRUE(disk.Append(log, kRecord));
  EXPECT_TRUE(disk.AppendUnsettled(folder.Path("DATEREC.REC"), kRecord));
  EXPECT_TRUE(disk.Settle(log));
  EXPECT_FALSE(OnFullDisk(70, [&] { return disk.AppendUnsettled(log, kRecord); }));
  EXPECT_EQ(disk.Read(log)->size(), 60U);
  EXPECT_FALSE(disk.AppendUnsettled(folder.Path("missing/System.log"), kRecord));
}

TEST(LinuxDisk, FindsNamesInAnyCase) {
  const TempFolder folder;
  LinuxDisk disk;
  folder.Write("System.log", "one");
  EXPECT_EQ(disk.Read(folder.Path("system.LOG")), "one");
  EXPECT_EQ(disk.Open(folder.Path("SYSTEM.log"))->Bytes(), "one");
  EXPECT_TRUE(disk.Exists(folder.Path("system.log")));
  EXPECT_TRUE(disk.Append(folder.Path("system.log"), " two"));
  EXPECT_TRUE(
      disk.Replace(folder.Path("SYSTEM.LOG"), disk.Read(folder.Path("System.log")).value() + "!"));
  EXPECT_EQ(folder.Read("System.log"), "one two!");
  EXPECT_EQ(folder.Size(), 1u);

  // The exact spelling goes before any other, and letters beyond ASCII have a case of their own.
  folder.Write("system.log", "exact");
  EXPECT_EQ(disk.Read(folder.Path("system.log")), "exact");
  folder.Write("\xC3\x84.txt", "umlaut");
  EXPECT_FALSE(disk.Exists(folder.Path("\xC3\xA4.txt")));

  EXPECT_TRUE(disk.Remove(folder.Path("SYSTEM.LOG")));
  EXPECT_TRUE(disk.Remove(folder.Path("SYSTEM.LOG")));
  EXPECT_FALSE(disk.Remove(folder.Path("SYSTEM.LOG")));
}

TEST(LinuxDisk, WhatIsNoReadableFileIsAbsent) {
  const TempFolder folder;
  LinuxDisk disk;
  ASSERT_EQ(mkfifo(folder.Path("pipe").c_str(), 0600), 0);
  fs::create_directory(folder.Path("folder"));
  for (const char* name : {"none", "pipe", "folder", "none/none"}) {
    SCOPED_TRACE(name);
    EXPECT_FALSE(disk.Read(folder.Path(name)));
    EXPECT_FALSE(disk.Open(folder.Path(name)));
  }
  for (const char* name : {"pipe", "folder", "none/none"}) {
    SCOPED_TRACE(name);
    EXPECT_FALSE(disk.Append(folder.Path(name), kRecord));
    EXPECT_FALSE(disk.Replace(folder.Path(name), kRecord));
  }
  EXPECT_EQ(folder.Size(), 2u);
  // Nobody's settings, whatever its name.
  folder.Write("huge", "");
  fs::resize_file(folder.Path("huge"), 1ULL << 40);
  EXPECT_FALSE(disk.Read(folder.Path("huge")));
}

TEST(LinuxDisk, ReplacedFileIsWholeAtEveryMoment) {
  const TempFolder folder;
  LinuxDisk disk;
  const std::string lines[] = {"2,30,0,5,0,2,30,1,3,110,\"119\",1\r\n", std::string(100000, '7')};
  const std::string path = folder.Path("Orvane.ini");
  ASSERT_TRUE(disk.Replace(path, lines[0]));
  std::atomic<bool> done = false;
  std::atomic<int> reads = 0;
  std::thread reader([&] {
    const LinuxDisk other;
    while (!done) {
      const auto text = other.Read(path);
      ASSERT_TRUE(text == lines[0] || text == lines[1]) << (text ? text->size() : 0);
      ++reads;
    }
  });
  for (int i = 1; i < 100 || reads < 100; ++i) ASSERT_TRUE(disk.Replace(path, lines[i % 2]));
  done = true;
  reader.join();
  EXPECT_EQ(folder.Size(), 1u);
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
  struct stat status {};
  ASSERT_EQ(stat(real.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0640u);

  // A link to a file that is still to come.
  fs::create_symlink("real/later", folder.Path("System.log"));
  EXPECT_TRUE(disk.Append(folder.Path("System.log"), "line"));
  EXPECT_EQ(folder.Read("real/later"), "line");
  // What a power cut left of an earlier try is in nobody's way.
  folder.Write("real/.settings.new", "half");
  EXPECT_TRUE(disk.Replace(folder.Path("Orvane.ini"), "newer"));
  EXPECT_EQ(folder.Read("real/settings"), "newer");
  EXPECT_FALSE(fs::exists(folder.Path("real/.settings.new")));
}

TEST(LinuxDisk, FullDiskLeavesEverythingAsItWas) {
  const TempFolder folder;
  LinuxDisk disk;
  const std::string log = folder.Path("System.log");
  for (int i = 0; i < 3; ++i) ASSERT_TRUE(disk.Append(log, kRecord));
  const std::string before = folder.Read("System.log");
  ASSERT_EQ(before.size(), 60u);
  // Room for none, for a part, and for just one more record.
  EXPECT_FALSE(OnFullDisk(60, [&] { return disk.Append(log, kRecord); }));
  EXPECT_FALSE(OnFullDisk(79, [&] { return disk.Append(log, kRecord); }));
  EXPECT_EQ(folder.Read("System.log"), before);
  EXPECT_TRUE(OnFullDisk(80, [&] { return disk.Append(log, kRecord); }));
  EXPECT_EQ(folder.Read("System.log").size(), 80u);

  EXPECT_FALSE(OnFullDisk(10, [&] { return disk.Append(folder.Path("DateRec.rec"), kRecord); }));
  EXPECT_FALSE(OnFullDisk(10, [&] { return disk.Replace(log, kRecord); }));
  EXPECT_EQ(folder.Read("System.log").size(), 80u);
  EXPECT_EQ(folder.Size(), 1u);
}

TEST(LinuxDisk, ViewOutlivesGrowthAndDeletion) {
  const TempFolder folder;
  LinuxDisk disk;
  for (const std::size_t size : {std::size_t{0}, std::size_t{60}, std::size_t{3} << 20}) {
    SCOPED_TRACE(size);
    const std::string content(size, 'x');
    const std::string path = folder.Write("DateRec.rec", content);
    const auto view = disk.Open(path);
    ASSERT_TRUE(view);
    EXPECT_TRUE(disk.Append(path, kRecord));
    EXPECT_TRUE(disk.Remove(path));
    EXPECT_EQ(view->Bytes(), content);
  }
}

TEST(LinuxDisk, ViewSurvivesTruncationByOthers) {
  const TempFolder folder;
  LinuxDisk disk;
  const std::string path = folder.Write("DateRec.rec", std::string(std::size_t{3} << 20, 'x'));
  const auto first = disk.Open(path);
  const auto second = disk.Open(path);
  ASSERT_EQ(truncate(path.c_str(), 1 << 20), 0);
  for (const auto* view : {&first, &second}) {
    const std::string_view bytes = (*view)->Bytes();
    EXPECT_EQ(bytes[0], 'x');
    EXPECT_EQ(bytes[(std::size_t{1} << 20) + 1], '\0');
    EXPECT_EQ(bytes.back(), '\0');
  }
}

}  // namespace
}  // namespace orvane::test
