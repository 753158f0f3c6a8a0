#include "shots/main_form.h"

#include "ui/main_window.h"

namespace orvane::shots {
namespace {

// As in the program, the window is there before the words.
std::unique_ptr<QWidget> Main(Stage& stage) {
  return std::make_unique<MainWindow>(stage.state, stage.panel, stage.form);
}

// After so many polls that the UPS has answered with `status`.
std::unique_ptr<QWidget> MainAfter(Stage& stage, const test::StatusFrame& status, int polls) {
  auto window = Main(stage);
  stage.status = status;
  stage.Start();
  stage.Polls(polls);
  return window;
}

}  // namespace

std::unique_ptr<QWidget> BeforeFirstReply(Stage& stage) {
  auto window = Main(stage);
  stage.silent = true;
  stage.Start();
  stage.Poll();
  return window;
}

std::unique_ptr<QWidget> Normal(Stage& stage) {
  return MainAfter(stage, {}, 2);
}

std::unique_ptr<QWidget> MainsFailed(Stage& stage) {
  return MainAfter(stage, {.input = "000.0", .output = "229.4", .battery = "2.05", .bits = "1000"},
                   30);
}

std::unique_ptr<QWidget> BatteryLow(Stage& stage) {
  return MainAfter(stage, {.input = "000.0", .output = "226.0", .battery = "1.79", .bits = "1100"},
                   30);
}

std::unique_ptr<QWidget> Bypass(Stage& stage) {
  return MainAfter(stage, {.input = "218.6", .output = "218.6", .bits = "0010"}, 3);
}

std::unique_ptr<QWidget> Overload(Stage& stage) {
  return MainAfter(stage, {.load = "112", .temperature = "41.5"}, 3);
}

// Both warnings at once, and values beyond their scales.
std::unique_ptr<QWidget> Everything(Stage& stage) {
  auto window = Main(stage);
  stage.status = {.input = "000.0",
                  .output = "999.9",
                  .load = "160",
                  .frequency = "99.9",
                  .battery = "1.79",
                  .temperature = "88.8",
                  .bits = "1101"};
  stage.information =
      "A model name that goes on and on and on,12000.75,Version 10.2-beta,220,0,24,384,0,0\r";
  stage.Start();
  stage.Polls(3);
  return window;
}

std::unique_ptr<QWidget> LinkLost(Stage& stage) {
  auto window = Main(stage);
  stage.Start();
  stage.Polls(2);
  stage.silent = true;
  stage.Polls(5);
  return window;
}

std::unique_ptr<QWidget> Needles(Stage& stage) {
  auto window = Main(stage);
  stage.status = {.input = "223.7",
                  .output = "230.0",
                  .load = "048",
                  .frequency = "49.9",
                  .battery = "2.18",
                  .temperature = "27.5"};
  stage.Start();
  stage.Polls(2);
  stage.form.ShowDials();
  return window;
}

std::unique_ptr<QWidget> NeedlesBeyond(Stage& stage) {
  auto window = Everything(stage);
  stage.form.ShowDials();
  return window;
}

}  // namespace orvane::shots
