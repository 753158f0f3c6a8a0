// What the program is.
#pragma once

#include <QWidget>

#include "app/state.h"
#include "platform/dialogs.h"
#include "platform/forms.h"

namespace orvane {

class AboutWindow : public QWidget {
  Q_OBJECT

 public:
  // In the language of this moment. The button unloads the form from `forms`.
  AboutWindow(const State& state, Forms& forms, Dialogs& dialogs);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;

 private:
  const State& state_;
  Dialogs& dialogs_;
};

}  // namespace orvane
