#include "platform/linux/linux_host.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <tuple>

#include "platform/linux/linux_disk.h"
#include "platform/linux/run_hidden.h"
#include "support/temp_folder.h"

namespace orvane::test {
namespace {

using End = RunOutcome::End;

TEST(RunHidden, TellsHowTheProgramEnded) {
  const TempFolder folder;
  folder.Write("no program", "text");
  folder.Script("unwell", "exit 7");
  folder.Script("crash", "kill -SEGV $$");
  folder.Script("blanks; signs $(exit 3)", "exit 0");
  const std::tuple<const char*, End, int> cases[] = {{"none", End::kNotStarted, ENOENT},
                                                     {"no program", End::kNotStarted, EACCES},
                                                     {"unwell", End::kExited, 7},
                                                     {"crash", End::kCrashed, SIGSEGV},
                                                     {"blanks; signs $(exit 3)", End::kExited, 0}};
  for (const auto& [name, end, status] : cases) {
    SCOPED_TRACE(name);
    const RunOutcome run = RunHidden(folder.Path(name), std::chrono::seconds(30));
    EXPECT_EQ(run.end, end);
    EXPECT_EQ(run.status, status);
    EXPECT_EQ(run.reason.empty(), end != End::kNotStarted);
  }
  // Also where the ends of children are ignored.
  const auto before = signal(SIGCHLD, SIG_IGN);
  EXPECT_EQ(RunHidden(folder.Path("unwell"), std::chrono::seconds(30)).end, End::kExited);
  signal(SIGCHLD, before);
}

TEST(RunHidden, LeavesWhatDoesNotEndInTime) {
  const TempFolder folder;
  // The program waits for an order, in the form of a line in a pipe.
  ASSERT_EQ(mkfifo(folder.Path("order").c_str(), 0600), 0);
  const std::string program =
      folder.Script("slow", "cd " + folder.Path() + "\nread word < order\necho $word > done");
  EXPECT_EQ(RunHidden(program, std::chrono::milliseconds(50)).end, End::kTimedOut);
  EXPECT_EQ(folder.Read("done"), "");
  // It runs on and can still do its work.
  std::ofstream(folder.Path("order")) << "go" << std::endl;
  waitpid(-1, nullptr, 0);
  EXPECT_EQ(folder.Read("done"), "go\n");
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
  const int ours = open(folder.Write("secret", "").c_str(), O_RDONLY);
  sigset_t blocked, before;
  sigemptyset(&blocked);
  sigaddset(&blocked, SIGTERM);
  sigprocmask(SIG_BLOCK, &blocked, &before);
  const auto ignored = signal(SIGPIPE, SIG_IGN);
  RunHidden(folder.Script("look", "cd " + folder.Path() + R"(
standard=$(readlink /proc/$$/fd/0 /proc/$$/fd/1)
echo "$standard" > seen
readlink /proc/$$/fd/* | grep secret >> seen
grep -E 'Sig(Blk|Ign)' /proc/$$/status | sed 's/:.*\(.......\)$/ \1/' >> seen
[ $(cut -d' ' -f6 /proc/$$/stat) = $$ ] && echo session >> seen)"),
            std::chrono::seconds(30));
  sigprocmask(SIG_SETMASK, &before, nullptr);
  signal(SIGPIPE, ignored);
  close(ours);
  EXPECT_EQ(folder.Read("seen"), "/dev/null\n/dev/null\nSigBlk 0000000\nSigIgn 0000000\nsession\n");
}

TEST(SecondInstance, OneProgramForEachDirectory) {
  const TempFolder one, other;
  LinuxHost first(one.Path(), {}, {}, {}), second(one.Path(), {}, {}, {});
  for (int i = 0; i < 2; ++i) {
    EXPECT_FALSE(first.IsSecondInstance());
    EXPECT_TRUE(second.IsSecondInstance());
  }
  // A directory without a lock holds nobody off.
  for (const std::string& path : {other.Path(), other.Path("none")}) {
    EXPECT_FALSE(LinuxHost(path, {}, {}, {}).IsSecondInstance());
  }
}

TEST(PlatformSettings, EveryKeyIsOptional) {
  using Action = ShutdownAction;
  const struct {
    const char *text, *com2;
    Action action;
    const char *unknown, *windows;  // "~" stands for the program's directory
    std::optional<float> battery = {};
    const char* bad_battery = "";
  } cases[] = {
      {"", "", Action::kHalt, "", "~"},
      {"[ports]\r\ncom2=/dev/x\r\n[SHUTDOWN]\r\naction=PowerOff\r\n", "/dev/x", Action::kPowerOff,
       "", "~"},
      {"[Shutdown]\nAction=Sleep\n[Directories]\nWindows=w/", "", Action::kHalt, "Sleep", "~/w"},
      {"[Ports]\nCOM1= ; none\nCOM2=/dev/y\t; the modem\n"
       "[Shutdown]\nAction=None        ; a trial\n[Directories]\nWindows=/a;b//   ; here",
       "/dev/y", Action::kNone, "", "/a;b"},
      {"[Directories]\nWindows=/", "", Action::kHalt, "", "/"},
      {"[Battery]\nVoltage=24 ; two", "", Action::kHalt, "", "~", 24},
      {"[desktop]\nNotifications=0", "", Action::kHalt, "", "~"},
      {"[Desktop]\nNotifications=1", "", Action::kHalt, "", "~"},
      {"[Battery]\nVoltage=1000", "", Action::kHalt, "", "~", 1000},
      {"[Battery]\nVoltage=24V", "", Action::kHalt, "", "~", {}, "24V"},
      {"[Battery]\nVoltage=1.9", "", Action::kHalt, "", "~", {}, "1.9"},
      {"[Battery]\nVoltage=nan", "", Action::kHalt, "", "~", {}, "nan"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    const TempFolder folder;
    if (*c.text) folder.Write("platform.ini", c.text);
    const PlatformSettings settings = LoadPlatformSettings(LinuxDisk(), folder.Path());
    EXPECT_EQ(settings.ports[0], "");
    EXPECT_EQ(settings.ports[1], c.com2);
    EXPECT_EQ(settings.action, c.action);
    EXPECT_EQ(settings.unknown_action, c.unknown);
    std::string windows = c.windows;
    if (windows[0] == '~') windows.replace(0, 1, folder.Path());
    EXPECT_EQ(settings.report_directory, windows);
    EXPECT_EQ(settings.battery_voltage, c.battery);
    EXPECT_EQ(settings.bad_battery_voltage, c.bad_battery);
    EXPECT_EQ(settings.notifications, !std::string(c.text).ends_with("Notifications=0"));
  }
}

TEST(PlatformSettings, NameTheSocketOnWhichTheUpsIsShared) {
  const struct {
    const char* text;
    const char* socket;
    const char* bad_name;
  } cases[] = {
      {"Socket=/x/ups", "", ""},
      {"Name=ups ; mine", "/run/nut/orvane-ups", ""},
      {"Name=ups\nSocket=/x/ups", "/x/ups", ""},
      {"Name=../ups", "", "../ups"},
  };
  for (const auto& c : cases) {
    const TempFolder folder;
    folder.Write("platform.ini", std::string("[Share]\n") + c.text);
    const PlatformSettings settings = LoadPlatformSettings(LinuxDisk(), folder.Path());
    EXPECT_EQ(settings.share_socket, c.socket) << c.text;
    EXPECT_EQ(settings.bad_share_name, c.bad_name) << c.text;
  }
}

}  // namespace
}  // namespace orvane::test
