#include "shots/boxes.h"

#include "ui/about_window.h"
#include "ui/alert_window.h"
#include "ui/splash_window.h"

namespace orvane::shots {

std::unique_ptr<QWidget> Splash(Stage& stage) {
  return std::make_unique<SplashWindow>(stage.forms);
}

std::unique_ptr<QWidget> About(Stage& stage) {
  stage.Start();
  return std::make_unique<AboutWindow>(
      stage.state, "Orvane 3.0.0, Qt 6.4.2, Debian GNU/Linux 12 (bookworm), x11, UPS on COM1",
      stage.forms, stage.dialogs);
}

std::unique_ptr<QWidget> Alert(Stage& stage) {
  stage.status = {.input = "000.0", .output = "229.4", .battery = "2.05", .bits = "1000"};
  stage.Start();
  stage.Polls(241);
  return std::make_unique<AlertWindow>(stage.state, stage.form.Alert());
}

}  // namespace orvane::shots
