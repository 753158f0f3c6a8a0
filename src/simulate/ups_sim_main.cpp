// orvane-ups-sim: a UPS on a pseudo-terminal, for trying the program without one.
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "platform/sqlite/sqlite_history.h"
#include "simulate/past.h"
#include "simulate/simulator.h"
#include "simulate/ups_model.h"

namespace {

std::string DialectHelp() {
  std::string help = "what the UPS knows and tells:";
  for (const orvane::UpsDialect& dialect : orvane::kUpsDialects) {
    std::string name(dialect.name);
    name.resize(18, ' ');
    help.append("\n    ").append(name).append(dialect.about);
  }
  return help;
}

constexpr std::string_view kHistoryHelp =
    "writes two months that never were into the new file DIRECTORY/History.db, and ends";

// The exit code.
int WriteHistory(const std::string& directory) {
  const std::string path = directory + "/History.db";
  const auto complain = [](const std::string& text) {
    std::fprintf(stderr, "orvane-ups-sim: %s\n", text.c_str());
  };
  if (std::filesystem::exists(path)) {
    complain(path + " is there already");
    return 1;
  }
  orvane::SqliteHistory history(path, complain);
  const auto now = std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
  return orvane::WritePast(history, now) ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  orvane::UpsModel ups;
  orvane::OrderTable orders;
  orvane::AddUpsOrders(orders, ups);
  const std::string dialects = DialectHelp();
  const auto speak = [&ups](std::string_view name) {
    const orvane::UpsDialect* dialect = orvane::FindUpsDialect(name);
    if (dialect) ups.Speak(*dialect);
    return dialect != nullptr;
  };
  std::string directory;
  const auto take_history = [&directory](std::string_view name) {
    directory = name;
    return !name.empty();
  };
  const auto instead = [&directory] {
    return directory.empty() ? std::nullopt : std::optional(WriteHistory(directory));
  };
  return orvane::RunSimulator(argc, argv,
                              {.program = "orvane-ups-sim",
                               .about = "A simulated UPS on a pseudo-terminal, at 2400 baud.",
                               .baud = 2400,
                               .hid = true,
                               .options = {{"--dialect", "NAME", dialects, speak},
                                           {"--history", "DIRECTORY", kHistoryHelp, take_history}},
                               .instead = instead},
                              ups, orders);
}
