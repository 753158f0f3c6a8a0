// Orvane as a service of the system: the engine without windows. Windows attach to it over the
// system bus.
#include <signal.h>

#include <QCoreApplication>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <string>
#include <utility>

#include "app/settings.h"
#include "bus/bus_service.h"
#include "bus/service_windows.h"
#include "platform/linux/linux_clock.h"
#include "platform/linux/linux_disk.h"
#include "platform/linux/linux_host.h"
#include "platform/linux/linux_inspector.h"
#include "platform/linux/port_map.h"
#include "platform/linux/service_manager.h"
#include "platform/linux/unix_server.h"
#include "platform/linux/way_down.h"
#include "platform/qt/bus_notifier.h"
#include "platform/qt/device_port.h"
#include "platform/qt/device_watch.h"
#include "platform/qt/end_signals.h"
#include "platform/qt/program_run.h"
#include "platform/qt/qt_timer.h"
#include "platform/sqlite/sqlite_history.h"
#include "start.h"

namespace orvane {
namespace {

using std::chrono::milliseconds;

// Between two signs of life while the way down stands: well within the unit's WatchdogSec.
constexpr milliseconds kSignOfLife{2000};

// A port that was taken when the service started, as by a window that lets go of it.
constexpr milliseconds kTryPort{2000};

// The link stands, and the first minute of the history is written.
constexpr std::chrono::seconds kStartIsOver{70};

std::shared_ptr<void> ServeBus(Bus& bus) {
  return std::make_shared<BusNotifier>(bus);
}

// The host of a service: the session's part is the windows' to play.
class ServiceHost : public LinuxHost {
 public:
  ServiceHost(const std::string& directory, const PlatformSettings& settings)
      : LinuxHost(directory, settings, ServeBus, [] {}) {}

  BusService* service = nullptr;
  UnixServer* share_server = nullptr;
  ServiceManager* manager = nullptr;

  // The windows run their companion. Where one has not answered, it counts as running on.
  RunOutcome RunHidden(const std::string&, milliseconds limit) override {
    const bool all = service->SaveApplications(limit, [this] {
      share_server->ServeFor(milliseconds(0));
      manager->Alive();
    });
    return {all ? RunOutcome::End::kExited : RunOutcome::End::kTimedOut, 0, ""};
  }

  // From here on nothing is polled any more.
  void TakeDown() override {
    manager->Status("taking the computer down");
    QObject::connect(&life_, &QTimer::timeout, [this] { manager->Alive(); });
    life_.start(kSignOfLife);
    LinuxHost::TakeDown();
  }

  void ShowNotification(Notice notice, const Notification& notification) override {
    service->TellNotification(notice, &notification);
  }
  void WithdrawNotification(Notice notice) override { service->TellNotification(notice, nullptr); }

 private:
  QTimer life_;
};

// The first of the directories that the service manager names.
std::string StateDirectory() {
  const char* names = std::getenv("STATE_DIRECTORY");
  std::string directory(names ? names : "");
  directory.resize(std::min(directory.find(':'), directory.size()));
  return directory;
}

int Main(int argc, char** argv) {
  OccupyStandardDescriptors();
  if (argc > 1) {
    ReportLine(std::string("orvane-service: unknown option ") + argv[1] +
               "; it takes none, see orvane-service(8)");
    return 2;
  }
  const std::string directory = StateDirectory();
  if (!directory.starts_with('/')) {
    ReportLine("orvane-service: no STATE_DIRECTORY is named; start the unit orvane.service");
    return 1;
  }
  signal(SIGPIPE, SIG_IGN);
  QCoreApplication application(argc, argv);

  LinuxClock clock;
  LinuxDisk disk;
  // Without settings every delay would be zero.
  if (!disk.Exists(SettingsPath(directory))) {
    CopyFirstSettings(ExecutableDirectory(), directory);
  }
  const PlatformSettings settings = LoadPlatformSettings(disk, directory);
  ServiceManager manager;
  ServiceHost host(directory, settings);
  ReportUnknown(settings, host);
  const auto report = [&](const std::string& line) { host.Report(line); };
  UnixServer share_server(settings.share_socket, NotifyOf, report);
  PortMap ports(settings.ports);
  const auto device_of = [&](int number) { return ports.DeviceOf(number); };
  DevicePort ups_port(device_of, kUpsGather);
  DevicePort modem_port(device_of, kModemGather);
  QtTimer poll_timer, countdown_timer, schedule_timer, dial_timer, clock_timer, alert_timer,
      modem_timer, inspector_limit;
  ProgramRun companion_run(std::chrono::seconds(2));
  LinuxInspector inspector(
      LinuxInspector::PlacesOf(host), settings, host.SystemBus(), inspector_limit,
      [&](auto&&... run) { companion_run.Start(run...); }, device_of);
  inspector.WithoutSession();
  if (const auto took = WayDownTime(disk, directory)) {
    inspector.WayDown(took);
    KeepWayDownTime(disk, directory, *took);
  }
  ServiceWindows windows;
  windows.Report = report;
  const Seams seams{{poll_timer, countdown_timer, schedule_timer, dial_timer, clock_timer},
                    alert_timer,
                    modem_timer,
                    ups_port,
                    modem_port,
                    clock,
                    disk,
                    host,
                    windows,
                    windows,
                    share_server,
                    inspector};
  State state;
  state.BatteryVoltage = settings.battery_voltage;
  Panel panel;
  SqliteHistory history(directory + "/History.db", report);
  MainForm form(state, panel, seams);
  form.KeepHistory(history);
  windows.form = &form;

  BusConnection bus(Bus::Which::kSystem, ServeBus);
  BusService service(form, bus, PostToLoop, report);
  windows.TellForm = [&](const char* verb, Form which) { service.TellForm(verb, which); };
  windows.TellBox = [&](auto text, auto title) { service.TellBox(text, title); };
  host.service = &service;
  host.share_server = &share_server;
  host.manager = &manager;

  const DeviceWatch device_watch({settings.ports.begin(), settings.ports.end()},
                                 [&] { form.OnDevicesChange(); });
  const EndSignals end_signals([] { QCoreApplication::quit(); });
  QTimer try_port;
  QObject::connect(&try_port, &QTimer::timeout, [&] { form.OnDevicesChange(); });
  form.OnBeat = [&] {
    manager.Alive();
    manager.Status(StatusInWords(state, panel));
    service.Keep();
    if (ups_port.IsOpen()) {
      try_port.stop();
    } else if (!try_port.isActive()) {
      try_port.start(kTryPort);
    }
  };

  // The name first: a window with an engine of its own lets go of the port when it sees it.
  service.Keep();
  form.LoadSchedule();
  if (!form.Load()) return 1;
  form.Activate();
  manager.Ready();
  manager.Status(StatusInWords(state, panel));
  QTimer::singleShot(kStartIsOver, DropStartPages);
  const int code = QCoreApplication::exec();
  manager.Stopping();
  form.Unload();
  return code;
}

}  // namespace
}  // namespace orvane

int main(int argc, char** argv) {
  return orvane::Main(argc, argv);
}
