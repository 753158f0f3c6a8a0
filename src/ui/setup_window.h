// The window of the settings dialog.
#pragma once

#include "frame/frm_setup.h"
#include "ui/form_window.h"

class QBoxLayout;
class QGridLayout;
class QLineEdit;

namespace orvane {

class SetupWindow : public FormWindow {
 public:
  // Loads the dialog.
  SetupWindow(State& state, Panel& panel, FrmMain& main, const Seams& seams);

 private:
  struct Port;

  QWidget* AddPorts(const char* name, const QString& caption, std::initializer_list<Port> ports);
  QLayout* AddNumbers();
  QLineEdit* AddNumber(std::size_t index, const QString& name);
  QWidget* AddDialling();
  QLayout* AddButtons();

  const State& state_;
  FrmSetup setup_;
};

}  // namespace orvane
