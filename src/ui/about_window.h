// What the program is.
#pragma once

#include "app/state.h"
#include "platform/dialogs.h"
#include "platform/forms.h"
#include "ui/form_dialog.h"

namespace orvane {

class AboutWindow : public FormDialog {
  Q_OBJECT

 public:
  // In the language of this moment. `runs` tells what runs, in one line, which the user can copy.
  // The button unloads the form from `forms`.
  AboutWindow(const State& state, const QString& runs, Forms& forms, Dialogs& dialogs);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;

 private:
  const State& state_;
  Dialogs& dialogs_;
};

}  // namespace orvane
