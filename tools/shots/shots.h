// Every window in its telling states: what the pictures show, and what the tests walk over.
#pragma once

#include <span>

#include "shots/stage.h"

namespace orvane::shots {

// One picture: its file name without language and ending, and what makes its window. The maker
// brings the program into the state to be shown and hands over the window, which is not shown yet.
struct Shot {
  const char* name;
  std::unique_ptr<QWidget> (*make)(Stage& stage);
};

std::span<const Shot> Shots();

}  // namespace orvane::shots
