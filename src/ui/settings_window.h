// The window of the settings dialog.
#pragma once

#include "frame/settings_form.h"
#include "ui/form_window.h"

class QBoxLayout;
class QGridLayout;
class QLineEdit;

namespace orvane {

class SettingsWindow : public FormWindow {
 public:
  // Loads the dialog.
  SettingsWindow(Engine& engine, Forms& forms, Dialogs& dialogs);

 private:
  // Buttons for the ports from `first` on; 0 is the search for one.
  QWidget* AddPorts(const QString& name, const QString& caption, int first, int& choice);
  QLayout* AddNumbers();
  QLineEdit* AddNumber(std::size_t index, const QString& name);
  QWidget* AddDialling();
  QLayout* AddButtons();

  const State& state_;
  SettingsForm form_;
};

}  // namespace orvane
