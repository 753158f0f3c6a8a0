// What tells that a companion knows the option `--version`.
#pragma once

#include <string_view>

namespace orvane {

// Stands in its executable. The option is its last word.
inline constexpr std::string_view kCompanionVersionMark = "orvane companion: --version";

}  // namespace orvane
