// The main window: the state of the UPS at a glance, and the menus.
#pragma once

#include <QMainWindow>
#include <functional>

#include "app/panel.h"
#include "frame/frm_main.h"

class QLabel;
class QMenu;

namespace orvane {

class MainWindow : public QMainWindow {
 public:
  // Follows `panel` from now on and hands the user's clicks to `frm_main`; both outlive the window.
  MainWindow(const State& state, Panel& panel, FrmMain& frm_main);
  ~MainWindow() override;

 private:
  struct Place {
    int left, top, width, height;  // twips
  };

  void BuildMenus(Panel& panel, FrmMain& frm_main);
  QMenu* AddMenu(Caption& caption);
  void AddEntry(QMenu& menu, Caption& caption, std::function<void()> click);
  QLabel* AddLabel(Label& label, const Place& place);
  void BuildStateStrip(Panel& panel);
  void BuildValues(Panel& panel);
  void BuildInformation(Panel& panel);
  void BuildLines(Panel& panel);

  Panel& panel_;
};

}  // namespace orvane
