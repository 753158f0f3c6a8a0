#include "boxes.h"

#include "ui/about_window.h"
#include "ui/splash_window.h"

namespace orvane::shots {

std::unique_ptr<QWidget> Splash(Stage& stage) {
  return std::make_unique<SplashWindow>(stage.forms);
}

std::unique_ptr<QWidget> About(Stage& stage) {
  stage.Start();
  return std::make_unique<AboutWindow>(stage.state, stage.forms, stage.dialogs);
}

}  // namespace orvane::shots
