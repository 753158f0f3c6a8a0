// The command line of the window program.
#pragma once

#include <string>

namespace orvane {

// What the command line asks for.
enum class Request { kRun, kHelp, kVersion, kCheck, kUnknown };

struct CommandLine {
  Request request = Request::kRun;
  std::string unknown;  // the first argument that nobody knows
};

// Reads the arguments behind the program's name. The options of the toolkit pass.
CommandLine ReadCommandLine(int argc, const char* const* argv);

// The locale of the session's messages: LC_ALL goes before LC_MESSAGES, and that before LANG
// (POSIX, Environment Variables). Empty when none is given.
std::string SessionLocale();
bool IsChinese(const std::string& locale);

// The text of `--help`, in Chinese where `locale` (as LC_ALL, LC_MESSAGES or LANG hold it) is.
std::string HelpText(const std::string& locale);

}  // namespace orvane
