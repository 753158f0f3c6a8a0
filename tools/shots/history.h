// The history in its telling states.
#pragma once

#include "shots/stage.h"

namespace orvane::shots {

std::unique_ptr<QWidget> HistoryOfAWeek(Stage& stage);
std::unique_ptr<QWidget> HistoryWithoutSamples(Stage& stage);

}  // namespace orvane::shots
