// The main form in its telling states.
#pragma once

#include "shots/stage.h"

namespace orvane::shots {

std::unique_ptr<QWidget> BeforeFirstReply(Stage& stage);
std::unique_ptr<QWidget> Normal(Stage& stage);
std::unique_ptr<QWidget> MainsFailed(Stage& stage);
std::unique_ptr<QWidget> BatteryLow(Stage& stage);
std::unique_ptr<QWidget> Bypass(Stage& stage);
std::unique_ptr<QWidget> Overload(Stage& stage);
std::unique_ptr<QWidget> Everything(Stage& stage);
std::unique_ptr<QWidget> LinkLost(Stage& stage);
std::unique_ptr<QWidget> Needles(Stage& stage);
std::unique_ptr<QWidget> NeedlesBeyond(Stage& stage);

}  // namespace orvane::shots
