#include "ui/number_box.h"

#include <QFocusEvent>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <algorithm>

namespace orvane {

bool NumberBox::Passes(const QString& typed) const {
  return std::all_of(typed.begin(), typed.end(),
                     [this](QChar c) { return !c.isPrint() || Takes(c.unicode()); });
}

void NumberBox::keyPressEvent(QKeyEvent* event) {
  if (Passes(event->text())) QLineEdit::keyPressEvent(event);
}

void NumberBox::inputMethodEvent(QInputMethodEvent* event) {
  if (Passes(event->commitString())) {
    QLineEdit::inputMethodEvent(event);
  } else {
    QInputMethodEvent nothing;
    QLineEdit::inputMethodEvent(&nothing);
  }
}

void NumberBox::focusOutEvent(QFocusEvent* event) {
  QLineEdit::focusOutEvent(event);
  // Its own menu only borrows the keyboard, to act on what stands and is selected here.
  if (event->reason() != Qt::PopupFocusReason) LostFocus();
}

}  // namespace orvane
