#include "companion/unit_desktop.h"

#include <systemd/sd-bus.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string_view>

namespace orvane::companion {
namespace {

constexpr BusObject kManager = {"org.freedesktop.systemd1", "/org/freedesktop/systemd1",
                                "org.freedesktop.systemd1.Manager"};
constexpr BusObject kKWin = {"org.kde.KWin", "/Session", "org.kde.KWin.Session"};
constexpr std::chrono::seconds kPatience{2};

constexpr std::string_view kApplications = "/app.slice/";
constexpr std::initializer_list<const char*> kUnitsOfApplications = {"app-*.scope",
                                                                     "app-*.service"};

// A program that the bus started: its connection, its name and a number.
constexpr std::string_view kBusUnit = "dbus-:";
constexpr const char* kUnitsOfTheBus = "dbus-:*.service";

Bus::Time Deadline() {
  return std::chrono::steady_clock::now() + kPatience;
}

void AppendStrings(sd_bus_message* message, std::initializer_list<const char*> texts) {
  sd_bus_message_open_container(message, 'a', "s");
  for (const char* text : texts) sd_bus_message_append_basic(message, 's', text);
  sd_bus_message_close_container(message);
}

// An empty variable counts as none (XDG Base Directories).
std::string Variable(const char* name, const std::string& otherwise) {
  const char* value = std::getenv(name);
  return value && *value ? value : otherwise;
}

// Whether the program of a unit `dbus-:1.2-NAME@0.service` is one that menus show: its desktop
// entry has the same name (Desktop Entries, D-Bus Activation). The others are helpers
// that nobody sees.
bool HasDesktopEntry(const std::string& unit) {
  const std::size_t dash = unit.find('-', kBusUnit.size());
  const std::size_t at = unit.rfind('@');
  if (dash == std::string::npos || at == std::string::npos || at < dash) return false;
  const std::string entry = "/applications/" + unit.substr(dash + 1, at - dash - 1) + ".desktop";
  std::istringstream directories(Variable("XDG_DATA_HOME", Variable("HOME", "") + "/.local/share") +
                                 ':' + Variable("XDG_DATA_DIRS", "/usr/local/share:/usr/share"));
  for (std::string directory; std::getline(directories, directory, ':');) {
    std::ifstream file(directory + entry);
    std::string text{std::istreambuf_iterator<char>(file), {}};
    if (!text.empty()) return text.find("\nNoDisplay=true") == std::string::npos;
  }
  return false;
}

}  // namespace

std::unique_ptr<UnitDesktop> UnitDesktop::Open() {
  std::string error;
  auto bus = Bus::Open(Bus::Which::kUser, error);
  if (!bus) return nullptr;
  std::unique_ptr<UnitDesktop> desktop(new UnitDesktop(std::move(bus)));
  std::vector<Unit> units;
  return desktop->Units(kUnitsOfApplications, units) ? std::move(desktop) : nullptr;
}

// Those that run or are about to end.
bool UnitDesktop::Units(std::initializer_list<const char*> patterns, std::vector<Unit>& units) {
  const auto call =
      bus_->Call(kManager, "ListUnitsByPatterns", Deadline(), [&](sd_bus_message* message) {
        AppendStrings(message, {"active", "reloading", "activating", "deactivating"});
        AppendStrings(message, patterns);
      });
  if (!call->Answered() || sd_bus_message_enter_container(call->answer, 'a', "(ssssssouso)") < 0) {
    return false;
  }
  const char* name = nullptr;
  const char* description = nullptr;
  while (sd_bus_message_enter_container(call->answer, 'r', "ssssssouso") > 0) {
    if (sd_bus_message_read(call->answer, "ss", &name, &description) < 0 ||
        sd_bus_message_skip(call->answer, "ssssouso") < 0) {
      return false;
    }
    units.push_back({name, description});
    sd_bus_message_exit_container(call->answer);
  }
  return true;
}

// The processes of a unit of an application; none when it stands outside `app.slice`.
std::vector<pid_t> UnitDesktop::Processes(const std::string& unit) {
  const auto call = bus_->Call(
      kManager, "GetUnitProcesses", Deadline(),
      [&](sd_bus_message* message) { sd_bus_message_append_basic(message, 's', unit.c_str()); });
  if (!call->Answered() || sd_bus_message_enter_container(call->answer, 'a', "(sus)") < 0) {
    return {};
  }
  std::vector<pid_t> processes;
  const char* group = nullptr;
  const char* command = nullptr;
  unsigned process = 0;
  while (sd_bus_message_read(call->answer, "(sus)", &group, &process, &command) > 0) {
    if (std::string_view(group).find(kApplications) == std::string_view::npos) continue;
    processes.push_back(static_cast<pid_t>(process));
  }
  return processes;
}

// False for a unit that is none of an application, or has a process that is spared.
bool UnitDesktop::AsApplication(const Unit& unit, const std::set<pid_t>& spared,
                                Application& application) {
  application.title = unit.description.empty() ? unit.name : unit.description;
  application.processes = Processes(unit.name);
  return !application.processes.empty() &&
         std::none_of(application.processes.begin(), application.processes.end(),
                      [&](pid_t process) { return spared.contains(process); });
}

std::vector<Application> UnitDesktop::List(const std::set<pid_t>& spared) {
  std::vector<Application> applications;
  std::vector<Unit> units;
  static_cast<void>(Units(kUnitsOfApplications, units));
  for (const Unit& unit : units) {
    Application application;
    if (!AsApplication(unit, spared, application)) continue;
    applications.push_back(std::move(application));
    listed_.push_back(unit.name);
  }
  return applications;
}

void UnitDesktop::AskToClose() {
  kwin_ = bus_->Send(
      kKWin, "closeWaylandWindows",
      // It must not be started for this.
      [](sd_bus_message* message) { sd_bus_message_set_auto_start(message, 0); },
      [this](const BusCall& call) {
        int closed = 0;
        const bool told = call.Answered() && sd_bus_message_read(call.answer, "b", &closed) > 0;
        // A window that its user wants to keep would lose what it holds.
        if (!told || closed) StopUnits();
      });
}

void UnitDesktop::StopUnits() {
  for (const std::string& unit : listed_) {
    bus_->Send(kManager, "StopUnit", [&](sd_bus_message* message) {
      sd_bus_message_append_basic(message, 's', unit.c_str());
      sd_bus_message_append_basic(message, 's', "replace");
    });
  }
}

bool UnitDesktop::Look(std::vector<bool>& gone) {
  std::vector<Unit> units;
  if (!Units(kUnitsOfApplications, units)) return false;
  gone.clear();
  for (const std::string& name : listed_) {
    gone.push_back(std::none_of(units.begin(), units.end(),
                                [&](const Unit& unit) { return unit.name == name; }));
  }
  return true;
}

std::vector<Application> UnitDesktop::Others(const std::set<pid_t>& spared) {
  std::vector<Unit> units;
  static_cast<void>(Units({"app-*.scope", "app-*.service", kUnitsOfTheBus}, units));
  std::vector<Application> others;
  for (const Unit& unit : units) {
    if (std::find(listed_.begin(), listed_.end(), unit.name) != listed_.end()) continue;
    if (unit.name.starts_with(kBusUnit) && !HasDesktopEntry(unit.name)) continue;
    Application application;
    if (AsApplication(unit, spared, application)) others.push_back(std::move(application));
  }
  return others;
}

}  // namespace orvane::companion
