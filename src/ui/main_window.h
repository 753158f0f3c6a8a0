// frmMain on the screen.
#pragma once

#include <QMainWindow>

#include "app/panel.h"
#include "app/state.h"
#include "frame/frm_main.h"

namespace orvane {

class MainWindow : public QMainWindow {
  Q_OBJECT

 public:
  // `panel` and `form` have to outlive the window.
  MainWindow(const State& state, Panel& panel, FrmMain& form);

 private:
  void AddMenus();
  void AddAreas(const State& state);

  Panel& panel_;
  FrmMain& form_;
};

}  // namespace orvane
