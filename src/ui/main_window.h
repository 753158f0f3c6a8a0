// The main window.
#pragma once

#include <QMainWindow>

#include "app/panel.h"
#include "app/state.h"
#include "frame/engine.h"

namespace orvane {

class MainWindow : public QMainWindow {
  Q_OBJECT

 public:
  // `panel` and `form` have to outlive the window.
  MainWindow(const State& state, Panel& panel, Engine& form);

 private:
  void AddMenus();
  void AddAreas(const State& state);

  Panel& panel_;
  Engine& form_;
};

}  // namespace orvane
