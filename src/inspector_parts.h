// How the window program and the check on the command line give the inspector what it needs.
#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <utility>

#include "platform/linux/linux_host.h"
#include "platform/linux/linux_inspector.h"
#include "platform/qt/program_run.h"

namespace orvane {

inline LinuxInspector::Places InspectorPlaces(const LinuxHost& host) {
  return {host.ProgramDirectory(), ExecutableDirectory() + "/orvane", host.CompanionPath()};
}

inline void RunForInspector(const std::string& path, const std::string& argument,
                            std::function<void(bool ran, const std::string& text)> on_end) {
  RunProgram(path, argument, std::chrono::seconds(2), std::move(on_end));
}

}  // namespace orvane
