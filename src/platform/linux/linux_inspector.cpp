#include "platform/linux/linux_inspector.h"

#include <sys/statvfs.h>
#include <systemd/sd-bus.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <utility>

#include "platform/linux/autostart.h"
#include "platform/linux/companion_mark.h"
#include "platform/linux/logind.h"

namespace orvane {
namespace {

constexpr int kLimit = 2000;  // milliseconds

// Drivers that talk to the same UPSes over the same ports, and a program that acts on what a driver
// tells.
constexpr std::string_view kDrivers[] = {"nutdrv_qx", "blazer_ser", "blazer_usb"};
constexpr std::string_view kMonitor = "upsmon";

constexpr BusObject kBusDriver{"org.freedesktop.DBus", "/org/freedesktop/DBus",
                               "org.freedesktop.DBus"};
constexpr const char* kUPower = "org.freedesktop.UPower";
constexpr std::uint32_t kKindUps = 3;  // of the property Type of org.freedesktop.UPower.Device

// By the answer of CanHalt or CanPowerOff, org.freedesktop.login1(5).
Right ReadRight(const BusCall& call) {
  if (!call.Answered()) return Right::kNoAnswer;
  const std::string answer = call.Text();
  if (answer == "yes") return Right::kYes;
  if (answer == "challenge") return Right::kPassword;
  if (answer == "na") return Right::kImpossible;
  if (answer == "inhibited" || answer == "inhibitor-blocked") return Right::kBlocked;
  if (answer == "challenge-inhibitor-blocked") return Right::kBlockedAndPassword;
  return Right::kNo;
}

bool HoldsText(const std::string& path, std::string_view text) {
  std::ifstream file(path, std::ios::binary);
  std::string part;
  std::string chunk(65536, '\0');
  while (file.read(chunk.data(), static_cast<std::streamsize>(chunk.size())) || file.gcount() > 0) {
    part.append(chunk, 0, static_cast<std::size_t>(file.gcount()));
    if (part.find(text) != std::string::npos) return true;
    part.erase(0, part.size() - std::min(part.size(), text.size()));
  }
  return false;
}

}  // namespace

LinuxInspector::Places LinuxInspector::PlacesOf(const LinuxHost& host) {
  return {host.ProgramDirectory(), ExecutableDirectory() + "/orvane", host.CompanionPath()};
}

LinuxInspector::LinuxInspector(Places places, const PlatformSettings& settings, BusConnection& bus,
                               Timer& limit, RunProgram run,
                               std::function<std::string(int)> device_of)
    : places_(std::move(places)),
      settings_(settings),
      bus_(bus),
      limit_(limit),
      run_(std::move(run)),
      device_of_(std::move(device_of)) {
  limit_.Interval(kLimit);
  limit_.Tick = [this] { GiveUp(); };
}

void LinuxInspector::Ask(std::function<void()> on_answer) {
  on_answer_ = std::move(on_answer);
  limit_.Enabled(false);
  limit_.Enabled(true);
  LookAtFiles();
  if (found_.in_session) LookAtProcesses();
  std::string error;
  if (Bus* bus = bus_.Get(error)) {
    AskLogind(*bus);
    if (found_.in_session) AskUPower(*bus);
  } else {
    GiveUp();
  }
  if (found_.in_session) AskCompanion();
}

// One that does not tell its version does its work whatever it is asked, and is not run.
void LinuxInspector::AskCompanion() {
  if (!HoldsText(places_.companion, kCompanionVersionMark)) {
    const bool there = access(places_.companion.c_str(), X_OK) == 0;
    found_.companion =
        there ? CompanionFound{true, "?", ""} : CompanionFound{false, "", std::strerror(errno)};
    return Answer();
  }
  run_(places_.companion, "--version", [this](bool ran, const std::string& text) {
    const std::string_view version = std::string_view(text).substr(0, text.find('\n'));
    found_.companion =
        ran ? CompanionFound{true, std::string(version.substr(version.rfind(' ') + 1)), ""}
            : CompanionFound{false, "", text};
    Answer();
  });
}

LastStep LinuxInspector::Last() const {
  LastStep last;
  if (settings_.action == ShutdownAction::kPowerOff) std::swap(last.wanted, last.other);
  last.none = settings_.action == ShutdownAction::kNone;
  last.unknown_action = settings_.unknown_action;
  return last;
}

bool LinuxInspector::StartWithDesktop(bool on) {
  const bool done = WriteAutostart(on, places_.executable);
  found_.autostart = ReadAutostart(found_.autostart_program);
  return done;
}

bool LinuxInspector::Complete() const {
  return found_.rights && (found_.blockers || found_.blockers_unknown) && found_.companion &&
         found_.others;
}

void LinuxInspector::LookAtFiles() {
  found_.unwritable.clear();
  const std::string& directory = places_.program_directory;
  for (const char* name : {"", "/Orvane.ini", "/systimer.ini", "/System.log", "/DateRec.rec"}) {
    const std::string path = directory + name;
    const bool there = !*name || access(path.c_str(), F_OK) == 0;
    if (there && access(path.c_str(), W_OK) != 0) found_.unwritable.push_back(path);
  }
  struct statvfs space {};
  found_.free_bytes =
      statvfs(directory.c_str(), &space) == 0 ? std::uint64_t{space.f_bavail} * space.f_frsize : 0;
  found_.autostart = ReadAutostart(found_.autostart_program);
}

void LinuxInspector::LookAtProcesses() {
  processes_ = {};
  const auto note = [](std::vector<std::string>& list, const std::string& name) {
    if (std::find(list.begin(), list.end(), name) == list.end()) list.push_back(name);
  };
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(places_.processes, error)) {
    if (!std::isdigit(static_cast<unsigned char>(entry.path().filename().string().front()))) {
      continue;
    }
    std::ifstream file(entry.path() / "comm");
    std::string name;
    if (!std::getline(file, name)) continue;
    if (std::find(std::begin(kDrivers), std::end(kDrivers), name) != std::end(kDrivers)) {
      note(processes_.on_port, name);
    } else if (name == kMonitor) {
      note(processes_.acting, name);
    }
  }
}

void LinuxInspector::AskLogind(Bus& bus) {
  rights_ = {};
  rights_asked_ = 2;
  const bool power_off_first = settings_.action == ShutdownAction::kPowerOff;
  for (const bool halt : {true, false}) {
    bus.Send(kLogindManager, halt ? "CanHalt" : "CanPowerOff", {}, [=, this](const BusCall& call) {
      (halt == power_off_first ? rights_.other : rights_.wanted) = ReadRight(call);
      if (rights_asked_ == 0 || --rights_asked_ > 0) return;
      found_.rights = rights_;
      Answer();
    });
  }
  bus.Send(kLogindManager, "ListInhibitors", {}, [this](const BusCall& call) {
    found_.blockers_unknown = !call.Answered();
    found_.blockers.reset();
    if (call.Answered()) found_.blockers = BlockersIn(call);
    Answer();
  });
}

// Without UPower on the bus nobody is asked: a question would start it.
void LinuxInspector::AskUPower(Bus& bus) {
  const auto has_name = [](sd_bus_message* message) {
    sd_bus_message_append(message, "s", kUPower);
  };
  bus.Send(kBusDriver, "NameHasOwner", has_name, [this, &bus](const BusCall& call) {
    int there = 0;
    if (call.Answered()) sd_bus_message_read(call.answer, "b", &there);
    found_.others = processes_;
    Answer();
    if (!there) return;
    constexpr BusObject kManager{kUPower, "/org/freedesktop/UPower", kUPower};
    bus.Send(kManager, "EnumerateDevices", {}, [this, &bus](const BusCall& devices) {
      if (!devices.Answered() || sd_bus_message_enter_container(devices.answer, 'a', "o") < 0) {
        return;
      }
      const char* path = nullptr;
      while (sd_bus_message_read(devices.answer, "o", &path) > 0) AskKind(bus, path);
    });
  });
}

void LinuxInspector::AskKind(Bus& bus, const std::string& device) {
  const BusObject object{kUPower, device.c_str(), "org.freedesktop.DBus.Properties"};
  const auto property = [](sd_bus_message* message) {
    sd_bus_message_append(message, "ss", "org.freedesktop.UPower.Device", "Type");
  };
  bus.Send(object, "Get", property, [this](const BusCall& call) {
    std::uint32_t kind = 0;
    if (!call.Answered() || sd_bus_message_read(call.answer, "v", "u", &kind) <= 0) return;
    if (kind != kKindUps || !found_.others) return;
    auto& acting = found_.others->acting;
    if (std::find(acting.begin(), acting.end(), "UPower") != acting.end()) return;
    acting.emplace_back("UPower");
    Answer();
  });
}

// Who has not answered by now does not answer.
void LinuxInspector::GiveUp() {
  limit_.Enabled(false);
  if (rights_asked_ > 0 || !found_.rights) found_.rights = rights_;
  rights_asked_ = 0;
  if (!found_.blockers) found_.blockers_unknown = true;
  if (!found_.others) found_.others = processes_;
  Answer();
}

}  // namespace orvane
