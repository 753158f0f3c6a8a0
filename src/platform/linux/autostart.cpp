#include "platform/linux/autostart.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <string_view>

#include "platform/linux/linux_disk.h"
#include "platform/linux/user_directories.h"
#include "platform/profile.h"
#include "platform/text.h"

namespace orvane {
namespace {

constexpr const char* kEntry = "/autostart/orvane.desktop";
constexpr const char* kSystemEntry = "/etc/xdg/autostart/orvane.desktop";
constexpr std::string_view kGroup = "Desktop Entry";

// The program of an Exec key: its first word, without quotes and escapes.
std::string ProgramIn(std::string_view command) {
  std::string program;
  const bool quoted = command.starts_with('"');
  if (quoted) command.remove_prefix(1);
  for (std::size_t i = 0; i < command.size(); ++i) {
    if (command[i] == (quoted ? '"' : ' ')) break;
    if (command[i] == '\\' && i + 1 < command.size()) ++i;
    if (command.substr(i).starts_with("%%")) ++i;
    program += command[i];
  }
  return program;
}

// The same the other way round. The value of a key has its own escapes for backslashes.
std::string CommandOf(std::string_view program) {
  std::string command = "\"";
  for (const char c : program) {
    if (c == '"' || c == '`' || c == '$') command += "\\\\";
    if (c == '\\') command += "\\\\\\";
    if (c == '%') command += '%';
    command += c;
  }
  return command + '"';
}

// A value as it was meant: backslashes stand there twice.
std::string Unescaped(std::string_view value) {
  std::string text;
  for (std::size_t i = 0; i < value.size(); ++i) {
    if (value.substr(i).starts_with("\\\\")) ++i;
    text += value[i];
  }
  return text;
}

bool IsThere(const std::string& program) {
  if (program.empty()) return false;
  if (program.find('/') != std::string::npos) return access(program.c_str(), X_OK) == 0;
  const char* path = std::getenv("PATH");
  std::string_view rest = path ? path : "";
  while (!rest.empty()) {
    const std::string_view directory = rest.substr(0, rest.find(':'));
    rest.remove_prefix(std::min(directory.size() + 1, rest.size()));
    if (access((std::string(directory) + '/' + program).c_str(), X_OK) == 0) return true;
  }
  return false;
}

// The value of a key in the group of an entry. Values in double quotes are values of this format,
// not of a profile, so that the line is looked for by hand.
std::optional<std::string> Value(std::string_view text, std::string_view key) {
  bool inside = false;
  while (!text.empty()) {
    const std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    if (line.starts_with('[')) inside = line == '[' + std::string(kGroup) + ']';
    const std::size_t equals = line.find('=');
    if (!inside || equals == std::string_view::npos) continue;
    if (Trimmed(line.substr(0, equals), kBlankOrTab) == key) {
      return std::string(Trimmed(line.substr(equals + 1), kBlankOrTab));
    }
  }
  return std::nullopt;
}

}  // namespace

Autostart ReadAutostart(std::string& program) {
  program.clear();
  const LinuxDisk disk;
  auto text = disk.Read(ConfigDirectory() + kEntry);
  if (!text) text = disk.Read(kSystemEntry);
  if (!text || Value(*text, "Hidden") == "true" ||
      Value(*text, "X-GNOME-Autostart-enabled") == "false") {
    return Autostart::kOff;
  }
  program = ProgramIn(Unescaped(Value(*text, "Exec").value_or("")));
  return IsThere(program) ? Autostart::kOn : Autostart::kBroken;
}

bool WriteAutostart(bool on, const std::string& path) {
  LinuxDisk disk;
  const std::string entry = ConfigDirectory() + kEntry;
  // An entry of the system's is held off by one of the user's that is hidden.
  const bool hide = !on && disk.Exists(kSystemEntry);
  if (!on && !hide) return !disk.Exists(entry) || disk.Remove(entry);
  MakeDirectories(ConfigDirectory() + "/autostart");
  std::string text = "[Desktop Entry]\nType=Application\nName=Orvane\nIcon=orvane\nExec=";
  text += CommandOf(path) + '\n';
  if (hide) text += "Hidden=true\n";
  return disk.Replace(entry, text);
}

}  // namespace orvane
