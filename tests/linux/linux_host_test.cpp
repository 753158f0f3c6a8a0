#include "platform/linux/linux_host.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include "linux/temp_folder.h"
#include "platform/linux/linux_disk.h"
#include "platform/linux/run_hidden.h"

namespace orvane::test {
namespace {

using End = RunOutcome::End;
using std::chrono::milliseconds;

// Long enough for any machine; the programs of these tests end at once.
constexpr milliseconds kPatience{30000};

LinuxHost HostOn(const TempFolder& folder) {
  return LinuxHost(folder.Path(), PlatformSettings{}, [] {});
}

TEST(RunHidden, TellsHowTheProgramEnded) {
  const TempFolder folder;
  folder.Write("no program", "text");
  folder.Script("well", "exit 0");
  folder.Script("unwell", "exit 7");
  folder.Script("crash", "kill -SEGV $$");
  folder.Script("with blanks; and signs $(exit 3)", "exit 5");
  struct Case {
    const char* name;
    End end;
    int status;
  };
  for (const Case& c : {Case{"none", End::kNotStarted, ENOENT},
                        {"no program", End::kNotStarted, EACCES},
                        {"well", End::kExited, 0},
                        {"unwell", End::kExited, 7},
                        {"crash", End::kCrashed, SIGSEGV},
                        {"with blanks; and signs $(exit 3)", End::kExited, 5}}) {
    SCOPED_TRACE(c.name);
    const RunOutcome run = RunHidden(folder.Path(c.name), kPatience);
    EXPECT_EQ(run.end, c.end);
    EXPECT_EQ(run.status, c.status);
    EXPECT_EQ(run.reason.empty(), c.end != End::kNotStarted);
  }
}

TEST(RunHidden, LeavesWhatDoesNotEndInTime) {
  const TempFolder folder;
  // The program waits for an order, in the form of a line in a pipe.
  ASSERT_EQ(mkfifo(folder.Path("order").c_str(), 0600), 0);
  const std::string program = folder.Script(
      "slow", "echo $$ > " + folder.Path("pid") + "\nread word < " + folder.Path("order") +
                  "\necho $word > " + folder.Path("done.part") + "\nmv " +
                  folder.Path("done.part") + ' ' + folder.Path("done"));
  EXPECT_EQ(RunHidden(program, milliseconds(50)).end, End::kTimedOut);
  EXPECT_FALSE(std::filesystem::exists(folder.Path("done")));
  // It runs on and can still do its work.
  std::ofstream(folder.Path("order")) << "go" << std::endl;
  const pid_t child = waitpid(-1, nullptr, 0);
  EXPECT_EQ(std::to_string(child) + '\n', folder.Read("pid"));
  EXPECT_EQ(folder.Read("done"), "go\n");
}

TEST(RunHidden, EndIsSeenAlsoWhereEndsOfChildrenAreIgnored) {
  const TempFolder folder;
  const auto before = signal(SIGCHLD, SIG_IGN);
  EXPECT_EQ(RunHidden(folder.Script("well", "exit 0"), kPatience).end, End::kExited);
  signal(SIGCHLD, before);
}

TEST(ReportLine, IsDroppedWhereNobodyReads) {
  int line[2];
  ASSERT_EQ(pipe(line), 0);
  const int before = dup(STDERR_FILENO);
  dup2(line[1], STDERR_FILENO);
  ReportLine("one\nline");
  char text[16];
  const ssize_t size = read(line[0], text, sizeof text);
  fcntl(line[1], F_SETFL, O_NONBLOCK);
  while (write(line[1], "", 1) == 1) {
  }
  fcntl(line[1], F_SETFL, 0);
  ReportLine("lost");
  dup2(before, STDERR_FILENO);
  for (const int end : {line[0], line[1], before}) close(end);
  EXPECT_EQ(std::string(text, static_cast<std::size_t>(size)), "one line\n");
}

TEST(RunHidden, StartsWithACleanSlate) {
  const TempFolder folder;
  const int ours = open("/dev/null", O_RDONLY);
  sigset_t blocked;
  sigset_t before;
  sigemptyset(&blocked);
  sigaddset(&blocked, SIGTERM);
  sigprocmask(SIG_BLOCK, &blocked, &before);
  const auto ignored = signal(SIGPIPE, SIG_IGN);
  const std::string program = folder.Script(
      "look",
      "cd " + folder.Path() +
          "\nfor i in 3 4 5 6 7 8 9 10 11 12; do [ -e /proc/$$/fd/$i ] && "
          "readlink /proc/$$/fd/$i; done | grep -v -e pipe: -e " +
          folder.Path() +
          " > open\nstandard=$(readlink /proc/$$/fd/0 /proc/$$/fd/1)\necho \"$standard\" > "
          "standard\n"
          "grep -E 'Sig(Blk|Ign)' /proc/$$/status | sed 's/:.*\\(.......\\)$/ \\1/' > signals\n"
          "cut -d' ' -f6 /proc/$$/stat > session\necho $$ > pid");
  EXPECT_EQ(RunHidden(program, kPatience).end, End::kExited);
  sigprocmask(SIG_SETMASK, &before, nullptr);
  signal(SIGPIPE, ignored);
  close(ours);
  EXPECT_EQ(folder.Read("open"), "");
  EXPECT_EQ(folder.Read("standard"), "/dev/null\n/dev/null\n");
  EXPECT_EQ(folder.Read("signals"), "SigBlk 0000000\nSigIgn 0000000\n");
  EXPECT_EQ(folder.Read("session"), folder.Read("pid"));
}

TEST(PrevInstance, OneProgramForEachDirectory) {
  const TempFolder one;
  const TempFolder other;
  LinuxHost first = HostOn(one);
  LinuxHost second = HostOn(one);
  LinuxHost elsewhere = HostOn(other);
  EXPECT_FALSE(first.PrevInstance());
  EXPECT_FALSE(first.PrevInstance());
  EXPECT_TRUE(second.PrevInstance());
  EXPECT_TRUE(second.PrevInstance());
  EXPECT_FALSE(elsewhere.PrevInstance());
}

TEST(PrevInstance, DirectoryWithoutALockHoldsNobodyOff) {
  const TempFolder folder;
  std::filesystem::create_directory(folder.Path("orvane.lock"));
  EXPECT_FALSE(HostOn(folder).PrevInstance());
  EXPECT_FALSE(LinuxHost(folder.Path("none"), PlatformSettings{}, [] {}).PrevInstance());
}

TEST(PrevInstance, KilledHolderLeavesNothingBehind) {
  const TempFolder folder;
  int told[2];
  ASSERT_EQ(pipe(told), 0);
  const pid_t child = fork();
  if (child == 0) {
    LinuxHost host = HostOn(folder);
    const char claimed = host.PrevInstance() ? 'n' : 'y';
    if (write(told[1], &claimed, 1) == 1) pause();
    _exit(1);
  }
  char claimed = 0;
  ASSERT_EQ(read(told[0], &claimed, 1), 1);
  EXPECT_EQ(claimed, 'y');
  LinuxHost host = HostOn(folder);
  EXPECT_TRUE(host.PrevInstance());
  ASSERT_EQ(kill(child, SIGKILL), 0);
  ASSERT_EQ(waitpid(child, nullptr, 0), child);
  EXPECT_FALSE(host.PrevInstance());
  close(told[0]);
  close(told[1]);
}

TEST(ProgramDirectory, BesideTheExecutableOrInTheUsersData) {
  const TempFolder folder;
  EXPECT_EQ(ProgramDirectoryFor(folder.Path()), folder.Path());
  ASSERT_EQ(setenv("XDG_DATA_HOME", folder.Path("share/data/").c_str(), 1), 0);
  for (const char* system : {"/usr", "/usr/lib/orvane", "/no/such/place"}) {
    SCOPED_TRACE(system);
    EXPECT_EQ(ProgramDirectoryFor(system), folder.Path("share/data/orvane"));
  }
  EXPECT_TRUE(std::filesystem::is_directory(folder.Path("share/data/orvane")));
  ASSERT_EQ(unsetenv("XDG_DATA_HOME"), 0);
  const char* home = getenv("HOME");
  const std::string kept = home ? home : "";
  ASSERT_EQ(setenv("HOME", folder.Path("me").c_str(), 1), 0);
  EXPECT_EQ(ProgramDirectoryFor("/usr/bin"), folder.Path("me/.local/share/orvane"));
  EXPECT_TRUE(std::filesystem::is_directory(folder.Path("me/.local/share/orvane")));
  if (home) setenv("HOME", kept.c_str(), 1);
}

TEST(PlatformSettings, EveryKeyIsOptional) {
  struct Case {
    const char* text;
    const char* com2;
    ShutdownAction action;
    const char* unknown;
    const char* windows;  // "~" stands for the program's directory
  };
  for (const Case& c : {
           Case{"", "", ShutdownAction::kHalt, "", "~"},
           {"[ports]\ncom2=/dev/x\n[SHUTDOWN]\naction=none", "/dev/x", ShutdownAction::kNone, "",
            "~"},
           {"[Shutdown]\r\nAction=PowerOff\r\n[Directories]\r\nWindows=/var/w//\r\n", "",
            ShutdownAction::kPowerOff, "", "/var/w"},
           {"[Shutdown]\nAction=Sleep\n[Directories]\nWindows=sub/w/", "", ShutdownAction::kHalt,
            "Sleep", "~/sub/w"},
           {"[Ports]\nCOM1= ; none\nCOM2=/dev/y\t; the modem\n"
            "[Shutdown]\nAction=None        ; a trial\n[Directories]\nWindows=/a;b   ; here",
            "/dev/y", ShutdownAction::kNone, "", "/a;b"},
           {"[Directories]\nWindows=/", "", ShutdownAction::kHalt, "", "/"},
       }) {
    SCOPED_TRACE(c.text);
    const TempFolder folder;
    folder.Write("platform.ini", c.text);
    const PlatformSettings settings = LoadPlatformSettings(LinuxDisk(), folder.Path());
    EXPECT_EQ(settings.ports[0], "");
    EXPECT_EQ(settings.ports[1], c.com2);
    EXPECT_EQ(settings.action, c.action);
    EXPECT_EQ(settings.unknown_action, c.unknown);
    std::string windows = c.windows;
    if (windows[0] == '~') windows.replace(0, 1, folder.Path());
    EXPECT_EQ(settings.windows_directory, windows);
  }
  const TempFolder bare;
  EXPECT_EQ(LoadPlatformSettings(LinuxDisk(), bare.Path()).windows_directory, bare.Path());
}

}  // namespace
}  // namespace orvane::test
