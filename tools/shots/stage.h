// A window and the program behind it, in the state that a picture shows.
#pragma once

#include <QWidget>
#include <memory>

#include "support/running_program.h"

namespace orvane::shots {

using test::RunningProgram;

struct Stage : RunningProgram {
  using RunningProgram::RunningProgram;
};

// One picture: its file name without language and ending, and what makes its window. The maker
// brings the program into the state to be shown and hands over the window, which is not shown yet.
struct Shot {
  const char* name;
  std::unique_ptr<QWidget> (*make)(Stage& stage);
};

}  // namespace orvane::shots
