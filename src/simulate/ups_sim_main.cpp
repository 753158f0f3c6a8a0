// orvane-ups-sim: a UPS on a pseudo-terminal, for trying the program without one.
#include <string>
#include <string_view>

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
  return orvane::RunSimulator(argc, argv,
                              {.program = "orvane-ups-sim",
                               .about = "A simulated UPS on a pseudo-terminal, at 2400 baud.",
                               .baud = 2400,
                               .hid = true,
                               .options = {{"--dialect", "NAME", dialects, speak}}},
                              ups, orders);
}
