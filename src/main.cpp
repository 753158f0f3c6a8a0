// Orvane: watches an uninterruptible power supply and protects the computer that hangs on it.
#include <signal.h>

#include <QAbstractButton>
#include <QApplication>
#include <QDesktopServices>
#include <QLineEdit>
#include <QSysInfo>
#include <QUrl>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <optional>

#include "app/options.h"
#include "bus/bus_engine.h"
#include "bus/service_watch.h"
#include "check_command.h"
#include "frame/main_form.h"
#include "platform/linux/linux_clock.h"
#include "platform/linux/linux_disk.h"
#include "platform/linux/linux_host.h"
#include "platform/linux/linux_inspector.h"
#include "platform/linux/port_map.h"
#include "platform/linux/tray_watch.h"
#include "platform/linux/unix_server.h"
#include "platform/linux/way_down.h"
#include "platform/qt/bus_notifier.h"
#include "platform/qt/device_port.h"
#include "platform/qt/device_watch.h"
#include "platform/qt/end_signals.h"
#include "platform/qt/program_run.h"
#include "platform/qt/qt_dialogs.h"
#include "platform/qt/qt_timer.h"
#include "platform/sqlite/sqlite_history.h"
#include "start.h"
#include "ui/about_window.h"
#include "ui/alert_window.h"
#include "ui/check_window.h"
#include "ui/day_history_window.h"
#include "ui/help.h"
#include "ui/history_window.h"
#include "ui/log_window.h"
#include "ui/look.h"
#include "ui/main_window.h"
#include "ui/schedule_window.h"
#include "ui/settings_window.h"
#include "ui/shutdown_report_window.h"
#include "ui/splash_window.h"
#include "ui/tray_icon.h"
#include "ui/windows.h"
#include "ui/words.h"

namespace orvane {
namespace {

std::shared_ptr<void> ServeBus(Bus& bus) {
  return std::make_shared<BusNotifier>(bus);
}

// How often an attached window looks whether there is a bus at all.
constexpr int kLookForBus = 5000;  // milliseconds

// What lies outside the program, for real.
struct Outside {
  LinuxClock clock;
  LinuxDisk disk;
  std::string program_directory = ProgramDirectoryFor(ExecutableDirectory());
  PlatformSettings settings = LoadPlatformSettings(disk, program_directory);
  LinuxHost host{program_directory, settings, ServeBus, [] { QApplication::beep(); }};
  PortMap ports{settings.ports};
  DevicePort ups_port{[this](int number) { return ports.DeviceOf(number); }, kUpsGather};
  DevicePort modem_port{[this](int number) { return ports.DeviceOf(number); }, kModemGather};
  QtTimer poll_timer, countdown_timer, schedule_timer, dial_timer, clock_timer, alert_timer,
      modem_timer;
  QtDialogs dialogs;
  std::optional<Help> help;
  Windows windows;
  UnixServer share_server{settings.share_socket, NotifyOf,
                          [this](const std::string& line) { host.Report(line); }};
  QtTimer tray_patience;
  QtTimer inspector_limit;
  ProgramRun companion_run{std::chrono::seconds(2)};
  LinuxInspector inspector{LinuxInspector::PlacesOf(host),
                           settings,
                           host.SystemBus(),
                           inspector_limit,
                           [this](auto&&... run) { companion_run.Start(run...); },
                           [this](int number) { return ports.DeviceOf(number); }};
  Seams seams{{poll_timer, countdown_timer, schedule_timer, dial_timer, clock_timer},
              alert_timer,
              modem_timer,
              ups_port,
              modem_port,
              clock,
              disk,
              host,
              dialogs,
              windows,
              share_server,
              inspector};
};

// The main form of a program that is being ended behind its back: the display goes away.
MainForm* form_at_exit = nullptr;

// The property of a window that names its button which changes something.
constexpr const char* kSteering = "steering";

// That says that it was opened without the right to change anything.
constexpr const char* kOpenedBlind = "opened_blind";

// The property of such a button that keeps its own tool tip.
constexpr const char* kOwnTip = "own_tip";

constexpr Form kSteeringForms[] = {Form::kLog,  Form::kShutdownReport, Form::kSettings,
                                   Form::kWeek, Form::kSpecialDays,    Form::kSelfTests};

// In these somebody may have begun to write.
constexpr Form kEditors[] = {Form::kSettings, Form::kWeek, Form::kSpecialDays, Form::kSelfTests};

// That button is grey where the user may not steer, and so is the telephone number, which nobody
// else gets to see. In a window that was opened without the right they stay so: it shows less than
// there is, and saving it would lose the rest.
void ShowRights(const Engine& engine, QWidget& window) {
  auto* button = window.findChild<QAbstractButton*>(window.property(kSteering).toString());
  if (!button) return;
  if (button->isEnabled()) button->setProperty(kOwnTip, button->toolTip());
  const bool blind = window.property(kOpenedBlind).toBool();
  const bool may = engine.MaySteer() && !blind;
  button->setEnabled(may);
  button->setToolTip(
      may ? button->property(kOwnTip).toString()
          : Pick(engine.Shown(), engine.MaySteer() ? Message::kOpenAgain : Message::kViewOnlyHint));
  if (auto* phone = window.findChild<QLineEdit*>("phone")) phone->setEnabled(may);
}

QWidget* WithRights(const Engine& engine, QWidget* window, const char* button) {
  window->setProperty(kSteering, button);
  window->setProperty(kOpenedBlind, !engine.MaySteer());
  ShowRights(engine, *window);
  return window;
}

// For whoever is asked what runs.
QString WhatRuns(Engine& engine) {
  const QString session = qEnvironmentVariable("XDG_SESSION_TYPE", QApplication::platformName());
  const QString port = QString::fromStdString(engine.Fields().port_line.Caption());
  const QStringList parts = {QString("Orvane %1").arg(ORVANE_VERSION),
                             QString("Qt %1").arg(qVersion()), QSysInfo::prettyProductName(),
                             session, port};
  return parts.join(", ");
}

// Registers how the window of each form is made; each is made when it is first shown.
void MakeForms(Outside& outside, Engine& engine, QWidget& main_window) {
  Windows& windows = outside.windows;
  const State& state = engine.Shown();
  Help& help = outside.help.emplace(
      state, outside.dialogs, Help::PagesOf(QString::fromStdString(ExecutableDirectory())),
      [](const QString& path) { return QDesktopServices::openUrl(QUrl::fromLocalFile(path)); });
  help.Offer(main_window);
  windows.OnMade = [&help](QWidget& window) { help.Offer(window); };
  windows.Make(Form::kSplash, [&] { return new SplashWindow(windows); });
  windows.Make(Form::kAbout,
               [&] { return new AboutWindow(state, WhatRuns(engine), windows, outside.dialogs); });
  windows.Make(Form::kAlert, [&] { return new AlertWindow(state, engine.Alert()); });
  windows.Make(Form::kLog, [&] {
    auto* window =
        new LogWindow(state, engine.Files(), outside.dialogs, engine.PathOf(Journal::kLog));
    return WithRights(engine, window, "clear");
  });
  windows.Make(Form::kDayHistory, [&] {
    return new DayHistoryWindow(state, engine.Files(), outside.clock,
                                engine.PathOf(Journal::kDayRecords));
  });
  windows.Make(Form::kHistory, [&] {
    return new HistoryWindow(state, engine.Fields(), engine.History(), outside.clock,
                             outside.dialogs);
  });
  windows.Make(Form::kShutdownReport, [&] {
    auto* window = new ShutdownReportWindow(state, engine.Files(), engine.PathOf(Journal::kReport));
    return WithRights(engine, window, "clear");
  });
  windows.Make(Form::kSettings, [&] {
    return WithRights(engine, new SettingsWindow(engine, windows, outside.dialogs), "save");
  });
  windows.Make(Form::kProtectionCheck, [&] { return new CheckWindow(engine); });
  for (const auto look : {&WeekLook, &SpecialLook, &SelfTestLook}) {
    windows.Make(look().form, [&, look] {
      return WithRights(engine, new ScheduleWindow(look(), state, engine, windows), "ok");
    });
  }
  engine.OnRights = [&, main_window_shows = engine.OnRights] {
    main_window_shows();
    for (const Form form : kSteeringForms) {
      if (QWidget* window = windows.Window(form)) ShowRights(engine, *window);
    }
  };
}

// Answers a command line that does not ask for the window. Nothing when it does, else the exit
// code.
std::optional<int> AnswerCommandLine(int argc, char** argv) {
  const CommandLine line = ReadCommandLine(argc, argv);
  switch (line.request) {
    case Request::kRun:
      return std::nullopt;
    case Request::kHelp:
      std::fputs(HelpText(SessionLocale()).c_str(), stdout);
      return 0;
    case Request::kVersion:
      std::puts("Orvane " ORVANE_VERSION);
      return 0;
    case Request::kCheck:
      return CheckProtection(argc, argv);
    case Request::kUnknown:
      break;
  }
  ReportLine("orvane: unknown option " + line.unknown + "; see orvane --help");
  return 2;
}

// The program with its engine inside. Where it may attach, it makes way for the service: true when
// that has come.
bool RunOwnEngine(bool may_attach) {
  Outside outside;
  outside.host.ServeMeanwhile(outside.share_server);
  ReportUnknown(outside.settings, outside.host);
  if (const auto took = WayDownTime(outside.disk, outside.program_directory)) {
    outside.inspector.WayDown(took);
    KeepWayDownTime(outside.disk, outside.program_directory, *took);
  }
  State state;
  state.BatteryVoltage = outside.settings.battery_voltage;
  outside.dialogs.Chinese = [&state] { return state.language == Language::kChinese; };
  Panel panel;
  SqliteHistory history(outside.program_directory + "/History.db",
                        [&](const std::string& line) { outside.host.Report(line); });
  MainForm main_form(state, panel, outside.seams);
  main_form.KeepHistory(history);
  MainWindow main_window(state, panel, main_form);
  Windows& windows = outside.windows;
  windows.MakeMain(main_window, {[&] { return main_form.Load(); }, [&] { main_form.Activate(); },
                                 [&] { main_form.Unload(); }, [&] { return main_form.Loaded(); }});
  MakeForms(outside, main_form, main_window);
  TrayIcon tray_icon(state, panel, main_form, windows);
  const TrayWatch tray_watch(outside.host.SessionBus(), outside.tray_patience, [&](bool modern) {
    const bool x11 = QApplication::platformName() == "xcb";
    if (modern || x11) tray_icon.Appear();
  });

  const auto& ports = outside.settings.ports;
  const DeviceWatch device_watch({ports.begin(), ports.end()},
                                 [&] { main_form.OnDevicesChange(); });
  bool service_there = false;
  bool made_way = false;
  const auto make_way = [&] {
    const auto open = [&](Form form) { return windows.Window(form) != nullptr; };
    if (!service_there || main_form.GoingDown() || std::ranges::any_of(kEditors, open)) return;
    made_way = true;
    windows.End();
  };
  BusConnection watched_bus(Bus::Which::kSystem, ServeBus);
  ServiceWatch service_watch(watched_bus, [&](bool there) {
    service_there = there;
    QMetaObject::invokeMethod(&windows, make_way, Qt::QueuedConnection);
  });
  if (may_attach) {
    service_watch.Keep();
    main_form.OnBeat = [&] {
      service_watch.Keep();
      make_way();
    };
  }
  const EndSignals end_signals([&] { windows.End(); });
  form_at_exit = &main_form;
  std::atexit([] {
    if (form_at_exit) form_at_exit->Unload();
  });

  windows.ShowPainted(Form::kSplash);
  main_form.LoadSchedule();
  const bool loaded = windows.LoadMain();
  windows.Unload(Form::kSplash);
  // A schedule may have taken the system down while a box of the load stood open.
  if (loaded && !main_form.GoingDown()) windows.Show(Form::kMain);
  if (!windows.Ended()) QApplication::exec();
  main_form.Unload();
  form_at_exit = nullptr;
  windows.Clear();
  return made_way;
}

// Windows of the service's engine. They outlive it and wait for its return.
void RunAttached(BusConnection& bus, bool just_came) {
  Outside outside;
  BusEngine engine(bus, outside.seams, PostToLoop);
  outside.dialogs.Chinese = [&engine] { return engine.Shown().language == Language::kChinese; };
  Windows& windows = outside.windows;
  MainWindow main_window(engine.Shown(), engine.Fields(), engine);
  windows.MakeMain(main_window, {[&] {
                                   if (!engine.Started()) engine.Start();
                                   return true;
                                 },
                                 [] {}, [&] { engine.Stop(); }, [&] { return engine.Started(); }});
  MakeForms(outside, engine, main_window);
  TrayIcon tray_icon(engine.Shown(), engine.Fields(), engine, windows);
  const TrayWatch tray_watch(outside.host.SessionBus(), outside.tray_patience, [&](bool modern) {
    const bool x11 = QApplication::platformName() == "xcb";
    if (modern || x11) tray_icon.Appear();
  });
  const EndSignals end_signals([&] { windows.End(); });
  outside.poll_timer.Interval(kLookForBus);
  outside.poll_timer.Tick = [&] { engine.Keep(); };
  outside.poll_timer.Enabled(true);
  windows.Show(Form::kMain);
  if (just_came) {
    PostToLoop([&] {
      const State& state = engine.Shown();
      outside.dialogs.Plain(state.Text(Message::kServiceWatches), "Orvane");
    });
  }
  if (!windows.Ended()) QApplication::exec();
  engine.Stop();
  windows.Clear();
}

int Main(int argc, char** argv) {
  OccupyStandardDescriptors();
  if (const auto code = AnswerCommandLine(argc, argv)) return *code;
  signal(SIGPIPE, SIG_IGN);
  // Nothing here is drawn by way of OpenGL, and its libraries take their time.
  setenv("QT_XCB_GL_INTEGRATION", "none", 0);
  // With shared memory every change on the panel has to wait for the display's word that the change
  // before it has been seen; the few hundred pixels of a change are sent sooner than that.
  setenv("QT_XCB_NO_MITSHM", "1", 0);
  QApplication::setAttribute(Qt::AA_DontUseNativeMenuBar);
  QApplication application(argc, argv);
  QApplication::setApplicationName("Orvane");
  QApplication::setDesktopFileName("orvane");
  QApplication::setQuitOnLastWindowClosed(false);
  look::Apply(application);

  // A portable folder always has an engine of its own.
  const std::string executable = ExecutableDirectory();
  const bool may_attach = ProgramDirectoryFor(executable) != executable;
  BusConnection bus(Bus::Which::kSystem, ServeBus);
  if (may_attach && ServiceRuns(bus)) {
    RunAttached(bus, false);
  } else if (RunOwnEngine(may_attach)) {
    RunAttached(bus, true);
  }
  return 0;
}

}  // namespace
}  // namespace orvane

int main(int argc, char** argv) {
  return orvane::Main(argc, argv);
}
