// The small forms that only inform.
#pragma once

#include "shots/stage.h"

namespace orvane::shots {

std::unique_ptr<QWidget> Splash(Stage& stage);
std::unique_ptr<QWidget> About(Stage& stage);
std::unique_ptr<QWidget> Alert(Stage& stage);

}  // namespace orvane::shots
