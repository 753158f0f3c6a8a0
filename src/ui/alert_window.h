// The alert: a small yellow window that tells the seconds left.
#pragma once

#include <QWidget>

#include "app/state.h"
#include "protect/frm_alert.h"

namespace orvane {

class AlertWindow : public QWidget {
 public:
  // Loads `frm_alert`, which outlives the window, and unloads it when the window is closed. The
  // words are those of the language of this moment.
  AlertWindow(const State& state, FrmAlert& frm_alert);
  ~AlertWindow() override;

 protected:
  void showEvent(QShowEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  void Unload();

  FrmAlert& frm_alert_;
  bool loaded_ = true;
};

}  // namespace orvane
