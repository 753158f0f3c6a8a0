// The main window.
#pragma once

#include <QMainWindow>
#include <vector>

#include "app/panel.h"
#include "app/state.h"
#include "frame/engine.h"

class QAction;

namespace orvane {

class MainWindow : public QMainWindow {
  Q_OBJECT

 public:
  // `panel` and `form` have to outlive the window.
  MainWindow(const State& state, Panel& panel, Engine& form);

 private:
  void AddMenus();
  void AddAreas(const State& state);

  void ShowRights();

  const State& state_;
  Panel& panel_;
  Engine& form_;
  std::vector<QAction*> orders_;  // the entries of those who may steer
};

}  // namespace orvane
