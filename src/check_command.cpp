#include "check_command.h"

#include <QCoreApplication>
#include <chrono>
#include <cstdio>
#include <memory>
#include <string>

#include "app/options.h"
#include "app/settings.h"
#include "bus/service_watch.h"
#include "check/port_trial.h"
#include "check/protection_check.h"
#include "platform/linux/linux_clock.h"
#include "platform/linux/linux_disk.h"
#include "platform/linux/linux_host.h"
#include "platform/linux/linux_inspector.h"
#include "platform/linux/port_map.h"
#include "platform/linux/way_down.h"
#include "platform/qt/bus_notifier.h"
#include "platform/qt/device_port.h"
#include "platform/qt/program_run.h"
#include "platform/qt/qt_timer.h"
#include "platform/sqlite/sqlite_history.h"
#include "schedule/schedule_tables.h"

namespace orvane {
namespace {

// Within which a running program has written down at least one minute of answers.
constexpr std::chrono::minutes kFresh{3};

std::string GradeWord(const State& state, Grade grade) {
  constexpr Message kWords[] = {Message::kCheckGreen, Message::kCheckAmber, Message::kCheckRed};
  return std::string(state.Text(kWords[static_cast<std::size_t>(grade)]));
}

void Print(const State& state, const std::vector<CheckRow>& rows) {
  std::string text;
  for (const CheckRow& row : rows) {
    text += '[' + GradeWord(state, row.grade) + "] " + row.name;
    text += (state.language == Language::kChinese ? "：" : ": ") + row.finding;
    if (!row.remedy.empty()) text += ' ' + row.remedy;
    text += '\n';
  }
  std::fputs(text.c_str(), stdout);
}

// What the history of a running program tells of the link.
LineFindings AskHistory(const std::string& program_directory, std::chrono::sys_seconds now) {
  SqliteHistory history(program_directory + "/History.db", [](const std::string&) {});
  LineFindings line;
  line.port = LineFindings::Port::kLeftAlone;
  const auto recent = history.Samples(Step::kMinute, now - kFresh, now + std::chrono::minutes(1));
  if (!recent.empty()) line.ups = LineFindings::Ups::kAnswers;
  return line;
}

}  // namespace

int CheckProtection(int argc, char** argv) {
  QCoreApplication application(argc, argv);
  LinuxClock clock;
  LinuxDisk disk;
  const std::string directory = ProgramDirectoryFor(ExecutableDirectory());
  const PlatformSettings settings = LoadPlatformSettings(disk, directory);
  LinuxHost host(
      directory, settings, [](Bus& bus) { return std::make_shared<BusNotifier>(bus); }, [] {});
  PortMap ports(settings.ports);
  State state;
  if (IsChinese(SessionLocale())) state.Settings[kLanguage] = 1;
  LoadSettings(disk, SettingsPath(directory), state);
  state.language = DeriveLanguage(state);
  LoadSchedule(disk, SchedulePath(directory), state);

  QtTimer limit;
  ProgramRun companion_run(std::chrono::seconds(2));
  LinuxInspector inspector(
      LinuxInspector::PlacesOf(host), settings, host.SystemBus(), limit,
      [&](auto&&... run) { companion_run.Start(run...); },
      [&](int number) { return ports.DeviceOf(number); });
  inspector.WayDown(WayDownTime(disk, directory));

  // What protects then is the service; a portable folder never looks for it.
  std::vector<CheckRow> service_rows;
  const bool served = directory != ExecutableDirectory() && ServiceRuns(host.SystemBus());
  if (served) {
    service_rows = AskServiceForCheck(host.SystemBus(), state);
    if (service_rows.empty()) service_rows.push_back(ServiceMissing(state));
  }

  LineFindings line;
  const bool runs = served || RunsIn(directory);
  bool tried = runs;
  if (runs && !served) line = AskHistory(directory, clock.SystemSeconds());
  const auto end_when_known = [&] {
    if (tried && inspector.Complete()) QCoreApplication::quit();
  };
  DevicePort port([&](int number) { return ports.DeviceOf(number); }, {});
  QtTimer pause;
  PortTrial trial(state, port, pause);
  // Both may have their answers before there is an event loop to be ended.
  QtTimer begin;
  begin.Interval(1);
  begin.Tick = [&] {
    begin.Enabled(false);
    inspector.Ask(end_when_known);
    if (runs) return end_when_known();
    trial.Begin([&] {
      tried = true;
      end_when_known();
    });
  };
  begin.Enabled(true);
  QCoreApplication::exec();

  if (!runs && trial.Opened() > 0) {
    line.port = LineFindings::Port::kOpen;
    line.port_name = PortName(state, trial.Opened(), ports.DeviceOf(trial.Opened()));
    if (trial.Answered()) line.ups = LineFindings::Ups::kAnswers;
  }
  const auto rows = served ? WithSession(service_rows, JudgeSession(state, inspector.Found()))
                           : JudgeProtection(state, clock.Now(), line,
                                             LookAtSettings(disk, SettingsPath(directory)),
                                             inspector.Found(), inspector.Last());
  Print(state, rows);
  return static_cast<int>(WorstGrade(rows));
}

}  // namespace orvane
