// The settings dialog, the protection check and the three schedule editors.
#pragma once

#include "shots/stage.h"

namespace orvane::shots {

std::unique_ptr<QWidget> Setup(Stage& stage);
std::unique_ptr<QWidget> SetupWithoutFile(Stage& stage);
std::unique_ptr<QWidget> CheckReady(Stage& stage);
std::unique_ptr<QWidget> CheckWithOpenPoints(Stage& stage);
std::unique_ptr<QWidget> Week(Stage& stage);
std::unique_ptr<QWidget> Special(Stage& stage);
std::unique_ptr<QWidget> SelfTest(Stage& stage);

}  // namespace orvane::shots
