#include "ui/form_window.h"

#include <QAbstractButton>
#include <QKeyEvent>
#include <QVBoxLayout>

namespace orvane {

FormWindow::FormWindow(const char* name, const QString& title)
    : FormDialog(Qt::Dialog | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                 Qt::WindowCloseButtonHint) {
  setObjectName(name);
  setWindowTitle(title);
}

QVBoxLayout* FormWindow::AddColumn() {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  column->setSpacing(kMargin);
  column->setSizeConstraint(QLayout::SetFixedSize);
  return column;
}

void FormWindow::Buttons(QAbstractButton* accept, QAbstractButton* leave) {
  accept_ = accept;
  leave_ = leave;
}

void FormWindow::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      (leave_->hasFocus() ? leave_ : accept_)->click();
      break;
    case Qt::Key_Escape:
      leave_->click();
      break;
    default:
      FormDialog::keyPressEvent(event);
  }
}

}  // namespace orvane
