// The program behind a window, to be brought into the state that a picture shows.
#pragma once

#include <QWidget>
#include <memory>

#include "support/running_program.h"

namespace orvane::shots {

using Stage = test::RunningProgram;

}  // namespace orvane::shots
