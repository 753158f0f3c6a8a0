// The forms that show what is recorded.
#pragma once

#include "shots/stage.h"

namespace orvane::shots {

std::unique_ptr<QWidget> DayWithEvents(Stage& stage);
std::unique_ptr<QWidget> DayOfManyEvents(Stage& stage);
std::unique_ptr<QWidget> LogOfEvents(Stage& stage);
std::unique_ptr<QWidget> LogWithoutFile(Stage& stage);
std::unique_ptr<QWidget> ShutdownReport(Stage& stage);

}  // namespace orvane::shots
