#include "companion/unit_desktop.h"

#include <systemd/sd-bus.h>

#include <algorithm>
#include <chrono>
#include <string_view>

namespace orvane::companion {
namespace {

constexpr BusObject kManager = {"org.freedesktop.systemd1", "/org/freedesktop/systemd1",
                                "org.freedesktop.systemd1.Manager"};
constexpr std::chrono::seconds kPatience{2};

constexpr std::string_view kApplications = "/app.slice/";

Bus::Time Deadline() {
  return std::chrono::steady_clock::now() + kPatience;
}

void AppendStrings(sd_bus_message* message, std::initializer_list<const char*> texts) {
  sd_bus_message_open_container(message, 'a', "s");
  for (const char* text : texts) sd_bus_message_append_basic(message, 's', text);
  sd_bus_message_close_container(message);
}

}  // namespace

std::unique_ptr<UnitDesktop> UnitDesktop::Open() {
  std::string error;
  auto bus = Bus::Open(Bus::Which::kUser, error);
  if (!bus) return nullptr;
  std::unique_ptr<UnitDesktop> desktop(new UnitDesktop(std::move(bus)));
  std::vector<Unit> units;
  return desktop->Units(units) ? std::move(desktop) : nullptr;
}

// Those that run or are about to end.
bool UnitDesktop::Units(std::vector<Unit>& units) {
  const auto call =
      bus_->Call(kManager, "ListUnitsByPatterns", Deadline(), [](sd_bus_message* message) {
        AppendStrings(message, {"active", "reloading", "activating", "deactivating"});
        AppendStrings(message, {"app-*.scope", "app-*.service"});
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

std::vector<Application> UnitDesktop::List(const std::set<pid_t>& spared) {
  std::vector<Application> applications;
  std::vector<Unit> units;
  static_cast<void>(Units(units));
  for (const Unit& unit : units) {
    const std::vector<pid_t> processes = Processes(unit.name);
    const bool own = std::any_of(processes.begin(), processes.end(),
                                 [&](pid_t process) { return spared.contains(process); });
    if (processes.empty() || own) continue;
    Application application;
    application.title = unit.description.empty() ? unit.name : unit.description;
    application.processes = processes;
    applications.push_back(std::move(application));
    listed_.push_back(unit.name);
  }
  return applications;
}

void UnitDesktop::AskToClose() {
  std::vector<std::shared_ptr<BusCall>> calls;
  for (const std::string& unit : listed_) {
    calls.push_back(bus_->Send(kManager, "StopUnit", [&](sd_bus_message* message) {
      sd_bus_message_append_basic(message, 's', unit.c_str());
      sd_bus_message_append_basic(message, 's', "replace");
    }));
  }
  const auto answered = [&] {
    return std::all_of(calls.begin(), calls.end(), [](const auto& call) { return call->done; });
  };
  static_cast<void>(bus_->Wait(answered, Deadline()));
}

bool UnitDesktop::Look(std::vector<bool>& gone) {
  std::vector<Unit> units;
  if (!Units(units)) return false;
  gone.clear();
  for (const std::string& name : listed_) {
    gone.push_back(std::none_of(units.begin(), units.end(),
                                [&](const Unit& unit) { return unit.name == name; }));
  }
  return true;
}

}  // namespace orvane::companion
