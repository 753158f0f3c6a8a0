// The command line of the window program.
#pragma once

#include <string>

namespace orvane {

// What the command line asks for.
enum class Request { kRun, kHelp, kVersion, kUnknown };

struct CommandLine {
  Request request = Request::kRun;
  std::string unknown;  // the first argument that nobody knows
};

// Reads the arguments behind the program's name. The options of the toolkit pass.
CommandLine ReadCommandLine(int argc, const char* const* argv);

// The text of `--help`, in Chinese where `locale` (as LC_ALL, LC_MESSAGES or LANG hold it) is.
std::string HelpText(const std::string& locale);

}  // namespace orvane
