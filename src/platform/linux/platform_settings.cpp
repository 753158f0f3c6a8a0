#include "platform/linux/platform_settings.h"

#include "platform/profile.h"

namespace orvane {
PlatformSettings LoadPlatformSettings(const Disk& disk, const std::string& program_directory) {
  PlatformSettings settings;
  settings.windows_directory = program_directory;
  const auto text = disk.Read(program_directory + "/platform.ini");
  if (!text) return settings;
  const ProfileFile file = ProfileFile::Parse(*text);
  for (std::size_t i = 0; i < settings.ports.size(); ++i) {
    settings.ports[i] = file.Get("Ports", "COM" + std::to_string(i + 1)).value_or("");
  }
  const std::string action = file.Get("Shutdown", "Action").value_or("");
  if (!ReadShutdownAction(action, settings.action)) settings.unknown_action = action;
  if (auto directory = file.Get("Directories", "Windows"); directory && !directory->empty()) {
    while (directory->size() > 1 && directory->back() == '/') directory->pop_back();
    const bool absolute = directory->front() == '/';
    settings.windows_directory = absolute ? *directory : program_directory + '/' + *directory;
  }
  return settings;
}

}  // namespace orvane
