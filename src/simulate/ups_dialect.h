// What differs between the UPSes on sale that answer the same poll.
#pragma once

#include <array>
#include <string_view>

namespace orvane {

struct UpsDialect {
  std::string_view name;
  std::string_view about;   // for --help
  bool information;         // knows "MD"
  std::string_view rating;  // the answer to "F"; empty: none
  std::string_view label;   // the answer to "I"; empty: none
  int cells;                // of the battery whose voltage it tells; 1: tells that of one cell
  bool on_line;             // bit b3 is clear
  bool thermometer;         // else dashes stand for the temperature
  bool echo;                // sends back what it does not know
};

// The first one is that of a UPS that is not told otherwise.
inline constexpr std::array<UpsDialect, 5> kUpsDialects = {{
    {"md", "answers MD; the voltage of one cell", true, "", "", 1, true, true, false},
    {"standard", "answers F and I; the voltage of one cell", false, "#230.0 003 96.00 50.0",
     "#Simulated       UPS Online 2.0       ", 1, true, true, false},
    {"line-interactive", "answers F and I, sends back the rest; the voltage of the whole battery",
     false, "#230.0 002 24.00 50.0", "#Simulated       UPS Line   2.1       ", 12, false, true,
     true},
    {"dashes", "dashes for what it does not know; the voltage of the whole battery", false,
     "#230.0 --- 36.00 --.-", "#                UPS Plain            ", 18, false, false, false},
    {"silent-info", "answers nothing but polls; the voltage of the whole battery", false, "", "",
     12, false, true, false},
}};

// Null for a name that no dialect has.
const UpsDialect* FindUpsDialect(std::string_view name);

}  // namespace orvane
