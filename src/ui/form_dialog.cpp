#include "ui/form_dialog.h"

#include <QAbstractButton>
#include <QCloseEvent>
#include <QKeyEvent>

namespace orvane {

QSize FormDialog::sizeHint() const {
  return resizable_ ? minimumSize() : QDialog::sizeHint();
}

void FormDialog::MakeResizable() {
  resizable_ = true;
  setMinimumSize(size());
  setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
  setSizeGripEnabled(true);
}

void FormDialog::Anchor(QWidget* part, const Shares& shares) {
  anchored_.push_back({part, part->geometry(), shares});
}

// That of a dialog would go by way of reject().
void FormDialog::closeEvent(QCloseEvent* event) {
  event->accept();
}

void FormDialog::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) {
    close();
  } else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    if (auto* button = qobject_cast<QAbstractButton*>(focusWidget())) button->click();
  } else {
    // NOLINTNEXTLINE(bugprone-parent-virtual-call): not QDialog's, which has keys of its own.
    QWidget::keyPressEvent(event);
  }
}

void FormDialog::resizeEvent(QResizeEvent* event) {
  QDialog::resizeEvent(event);
  const QSize growth = size() - minimumSize();
  if (anchored_.empty() || growth.width() < 0 || growth.height() < 0) return;
  for (const auto& [part, place, shares] : anchored_) {
    const auto across = [&](double share) { return qRound(growth.width() * share); };
    const auto down = [&](double share) { return qRound(growth.height() * share); };
    part->setGeometry(place.adjusted(across(shares.left), down(shares.top), across(shares.right),
                                     down(shares.bottom)));
  }
}

}  // namespace orvane
