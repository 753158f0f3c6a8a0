#include "shots/history.h"

#include <QPushButton>

#include "simulate/past.h"
#include "support/memory_history.h"
#include "ui/history_window.h"

namespace orvane::shots {
namespace {

std::unique_ptr<QWidget> History(Stage& stage,
                                 const std::shared_ptr<test::MemoryHistory>& history) {
  stage.Start();
  stage.Polls(2);
  auto window = std::make_unique<HistoryWindow>(stage.state, stage.panel, *history, stage.time,
                                                stage.dialogs);
  // It lives as long as its window.
  QObject::connect(window.get(), &QObject::destroyed, [history] {});
  return window;
}

}  // namespace

std::unique_ptr<QWidget> HistoryOfAWeek(Stage& stage) {
  const auto history = std::make_shared<test::MemoryHistory>();
  WritePast(*history, stage.time.SystemSeconds());
  auto window = History(stage, history);
  window->findChild<QPushButton*>("week")->click();
  return window;
}

std::unique_ptr<QWidget> HistoryWithoutSamples(Stage& stage) {
  return History(stage, std::make_shared<test::MemoryHistory>());
}

}  // namespace orvane::shots
