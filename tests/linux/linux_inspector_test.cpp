#include "platform/linux/linux_inspector.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utmpx.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>

#include "platform/linux/autostart.h"
#include "platform/linux/companion_mark.h"
#include "platform/linux/linux_disk.h"
#include "platform/linux/way_down.h"
#include "support/fake_time.h"
#include "support/temp_folder.h"

namespace orvane::test {
namespace {

void WriteFile(const std::string& path, const std::string& content, mode_t mode = 0644) {
  std::filesystem::create_directories(std::filesystem::path(path).parent_path());
  std::ofstream(path, std::ios::binary) << content;
  chmod(path.c_str(), mode);
}

// A variable of the environment, for as long as this lives.
class Variable {
 public:
  Variable(const char* name, const std::string& value) : name_(name) {
    setenv(name, value.c_str(), 1);
  }
  ~Variable() { unsetenv(name_); }
  Variable(const Variable&) = delete;
  Variable& operator=(const Variable&) = delete;

 private:
  const char* name_;
};

// Without a bus: what files and processes tell, and that nothing stays unanswered.
struct InspectorTest : testing::Test {
  std::unique_ptr<LinuxInspector> New() {
    LinuxInspector::Places places{folder.Path(), folder.Path() + "/orvane",
                                  folder.Path() + "/exit.exe", folder.Path() + "/proc"};
    return std::make_unique<LinuxInspector>(
        places, settings, bus, limit,
        [this](const std::string& path, const std::string& argument, auto on_end) {
          run.push_back(path + ' ' + argument);
          on_end(true, "exit.exe 7.8.9\n");
        },
        [](int) { return ""; });
  }

  TempFolder folder;
  Variable no_bus{"DBUS_SYSTEM_BUS_ADDRESS", "unix:path=" + folder.Path() + "/no-bus"};
  Variable config{"XDG_CONFIG_HOME", folder.Path() + "/config"};
  PlatformSettings settings;
  BusConnection bus{Bus::Which::kSystem, [](Bus&) { return nullptr; }};
  FakeTime time;
  FakeTimer limit{time};
  std::vector<std::string> run;
};

TEST_F(InspectorTest, FindsProgramsFilesAndCompanion) {
  WriteFile(folder.Path() + "/proc/12/comm", "upsmon\n");
  WriteFile(folder.Path() + "/proc/13/comm", "upsmon\n");
  WriteFile(folder.Path() + "/proc/14/comm", "nutdrv_qx\n");
  WriteFile(folder.Path() + "/proc/self/comm", "blazer_usb\n");
  const auto inspector = New();
  inspector->Ask({});
  time.Advance(std::chrono::seconds(2));
  EXPECT_TRUE(inspector->Complete());
  const OutsideFindings& found = inspector->Found();
  EXPECT_EQ(found.others->acting, std::vector<std::string>{"upsmon"});
  EXPECT_EQ(found.others->on_port, std::vector<std::string>{"nutdrv_qx"});
  EXPECT_EQ(found.rights->wanted, Right::kNoAnswer);
  EXPECT_TRUE(found.blockers_unknown);
  EXPECT_TRUE(found.unwritable.empty());
  EXPECT_GT(found.free_bytes, 0U);
  EXPECT_FALSE(found.companion->runs);
  EXPECT_EQ(found.companion->reason, "No such file or directory");

  // One that would close the applications whatever it is asked is not run.
  WriteFile(folder.Path() + "/exit.exe", "of an earlier version", 0755);
  inspector->Ask({});
  EXPECT_TRUE(run.empty());
  EXPECT_EQ(found.companion->version, "?");
  WriteFile(folder.Path() + "/exit.exe",
            std::string(65530, 'x') + std::string(kCompanionVersionMark), 0755);
  inspector->Ask({});
  EXPECT_EQ(run, std::vector<std::string>{folder.Path() + "/exit.exe --version"});
  EXPECT_EQ(found.companion->version, "7.8.9");
}

TEST_F(InspectorTest, EntryOfTheDesktopIsWrittenReadAndRemoved) {
  const auto inspector = New();
  WriteFile(folder.Path() + "/orvane", "", 0755);
  EXPECT_TRUE(inspector->StartWithDesktop(true));
  EXPECT_EQ(inspector->Found().autostart, Autostart::kOn);
  unlink((folder.Path() + "/orvane").c_str());
  inspector->Ask({});
  EXPECT_EQ(inspector->Found().autostart, Autostart::kBroken);
  EXPECT_EQ(inspector->Found().autostart_program, folder.Path() + "/orvane");
  EXPECT_TRUE(inspector->StartWithDesktop(false));
  EXPECT_EQ(inspector->Found().autostart, Autostart::kOff);
  EXPECT_FALSE(LinuxDisk().Exists(folder.Path() + "/config/autostart/orvane.desktop"));
  // A path with everything that needs an escape.
  const std::string odd = folder.Path() + "/a b$c`d\"e\\f%g";
  WriteFile(odd, "", 0755);
  EXPECT_TRUE(WriteAutostart(true, odd));
  std::string program;
  EXPECT_EQ(ReadAutostart(program), Autostart::kOn) << program;
  EXPECT_EQ(program, odd);
}

struct EntryCase {
  const char* text;
  Autostart autostart;
};

TEST_F(InspectorTest, EntriesOfOthersAreUnderstood) {
  const std::string directory = folder.Path() + "/bin";
  WriteFile(directory + "/orvane", "", 0755);
  const Variable path("PATH", "/nowhere:" + directory);
  const EntryCase cases[] = {
      {"[Desktop Entry]\nExec=orvane\n", Autostart::kOn},
      {"[Desktop Entry]\nExec = \"orvane\" -style fusion\n", Autostart::kOn},
      {"[Desktop Entry]\nExec=other\n", Autostart::kBroken},
      {"[Other]\nExec=orvane\n", Autostart::kBroken},
      {"[Desktop Entry]\nExec=orvane\nHidden=true\n", Autostart::kOff},
      {"[Desktop Entry]\nExec=orvane\nX-GNOME-Autostart-enabled=false\n", Autostart::kOff},
  };
  for (const EntryCase& row : cases) {
    WriteFile(folder.Path() + "/config/autostart/orvane.desktop", row.text);
    std::string program;
    EXPECT_EQ(ReadAutostart(program), row.autostart) << row.text;
  }
}

// The time from the program's last step to the end of the system, by records as systemd leaves
// them.
struct WayDownTest : testing::Test {
  static constexpr std::chrono::sys_seconds kStep{std::chrono::seconds(1'700'000'000)};

  void NewBoot(const char* id, int after) {
    WriteFile(records.boot_id, std::string(id) + '\n');
    WriteFile(records.stat, "cpu 1 2\nbtime " +
                                std::to_string((kStep.time_since_epoch().count() + after)) + '\n');
  }

  void AddShutdown(int after, const char* user = "shutdown") {
    utmpx record{};
    record.ut_type = RUN_LVL;
    std::strncpy(record.ut_user, user, sizeof record.ut_user - 1);
    record.ut_tv.tv_sec = static_cast<std::int32_t>(kStep.time_since_epoch().count() + after);
    std::ofstream(records.wtmp, std::ios::binary | std::ios::app)
        .write(reinterpret_cast<const char*>(&record), sizeof record);
  }

  std::optional<std::chrono::seconds> Time() { return WayDownTime(disk, folder.Path(), records); }

  TempFolder folder;
  LinuxDisk disk;
  BootRecords records{folder.Path() + "/boot_id", folder.Path() + "/stat", folder.Path() + "/wtmp",
                      false};
};

TEST_F(WayDownTest, IsMeasuredFromTheLastStepToTheEndOfTheBoot) {
  EXPECT_EQ(Time(), std::nullopt);
  NewBoot("one", -1000);
  NoteLastStep(disk, folder.Path(), kStep, records);
  AddShutdown(-500);
  AddShutdown(23);
  // The system stayed up: this is still the same boot.
  EXPECT_EQ(Time(), std::nullopt);
  NewBoot("two", 60);
  AddShutdown(24, "runlevel");
  AddShutdown(90);
  EXPECT_EQ(Time(), std::chrono::seconds(23));
  KeepWayDownTime(disk, folder.Path(), *Time());
  NewBoot("three", 9000);
  EXPECT_EQ(Time(), std::chrono::seconds(23));
  // Nothing tells of the next one, and the time before it stands.
  NoteLastStep(disk, folder.Path(), kStep + std::chrono::seconds(10000), records);
  NewBoot("four", 20000);
  EXPECT_EQ(Time(), std::chrono::seconds(23));
  // A computer does not take hours.
  AddShutdown(10000 + 3601);
  EXPECT_EQ(Time(), std::chrono::seconds(23));
}

}  // namespace
}  // namespace orvane::test
