// What the panel shows, as the variables by which upsd and its clients know a UPS.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "app/panel.h"
#include "app/state.h"

namespace orvane {

struct UpsVariable {
  std::string_view name;
  std::string value;  // empty: not known

  bool operator==(const UpsVariable&) const = default;
};

struct UpsVariables {
  // The same ones in the same order every time.
  std::vector<UpsVariable> list;
  // The link is lost: what stands in the list is no news of the UPS.
  bool stale = false;

  bool operator==(const UpsVariables&) const = default;
};

// `going_down`: this computer is on its way down, and the others are to go with it. They have to be
// told that whatever has become of the link, so it is never stale.
UpsVariables DescribeUps(const Panel& panel, const State& state, bool going_down);

// The value of one of the variables; empty where it is not known.
std::string_view ValueOf(const UpsVariables& variables, std::string_view name);

}  // namespace orvane
