#include "app/options.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>

namespace orvane {
namespace {

// Options of every Qt program (QGuiApplication, QApplication), with one dash or two.
constexpr std::string_view kQtFlags[] = {"reverse", "widgetcount"};
constexpr std::string_view kQtValues[] = {
    "display",         "geometry",    "icon",        "name",    "platform", "platformpluginpath",
    "platformtheme",   "plugin",      "style",       "session", "title",    "stylesheet",
    "qwindowgeometry", "qwindowicon", "qwindowtitle"};

template <class List>
bool Holds(const List& list, std::string_view name) {
  return std::find(std::begin(list), std::end(list), name) != std::end(list);
}

constexpr const char* kEnglish =
    "Usage: orvane [OPTION]\n"
    "Watches a UPS on a serial port and protects this computer when the mains fails.\n"
    "\n"
    "  --check     tell whether this computer is protected, and exit:\n"
    "              0 if it is, 1 if something needs attention, 2 if it is not\n"
    "  --help      show this text and exit\n"
    "  --version   show the version and exit\n"
    "\n"
    "The options of every Qt program are understood, too. See orvane(1).\n";

constexpr const char* kChinese =
    "用法：orvane [选项]\n"
    "监视串行口上的 UPS，市电中断时保护本机。\n"
    "\n"
    "  --check     检查本机是否受到保护，然后退出：\n"
    "              0 为就绪，1 为有需要注意之处，2 为未就绪\n"
    "  --help      显示本说明并退出\n"
    "  --version   显示版本并退出\n"
    "\n"
    "也接受所有 Qt 程序共有的选项。参见 orvane(1)。\n";

}  // namespace

CommandLine ReadCommandLine(int argc, const char* const* argv) {
  for (int i = 1; i < argc; ++i) {
    const std::string_view argument = argv[i];
    if (argument == "--help" || argument == "-h") return {Request::kHelp, ""};
    if (argument == "--check") return {Request::kCheck, ""};
    if (argument == "--version" || argument == "-v") return {Request::kVersion, ""};
    std::string_view name = argument;
    if (!name.starts_with('-')) return {Request::kUnknown, argv[i]};
    name.remove_prefix(name.starts_with("--") ? 2 : 1);
    const bool has_value = name.find('=') != std::string_view::npos;
    name = name.substr(0, name.find('='));
    if (Holds(kQtValues, name)) {
      if (!has_value) ++i;
    } else if (!Holds(kQtFlags, name)) {
      return {Request::kUnknown, argv[i]};
    }
  }
  return {};
}

std::string SessionLocale() {
  for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    if (const char* value = std::getenv(name); value && *value) return value;
  }
  return "";
}

bool IsChinese(const std::string& locale) {
  return locale.starts_with("zh");
}

std::string HelpText(const std::string& locale) {
  return IsChinese(locale) ? kChinese : kEnglish;
}

}  // namespace orvane
