// The alert: a small yellow window that shows the seconds left.
#pragma once

#include "app/state.h"
#include "protect/alert_form.h"
#include "ui/form_dialog.h"

namespace orvane {

class AlertWindow : public FormDialog {
 public:
  // Loads `alert_form`, which outlives the window, and unloads it when the window is closed. The
  // words are those of the language of this moment.
  AlertWindow(const State& state, AlertForm& alert_form);
  ~AlertWindow() override;

 protected:
  void showEvent(QShowEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  void Unload();

  AlertForm& alert_form_;
  bool loaded_ = true;
};

}  // namespace orvane
