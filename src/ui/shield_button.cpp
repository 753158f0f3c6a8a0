#include "ui/shield_button.h"

#include <QPointer>

#include "ui/twips.h"

namespace orvane {

QIcon ShieldIcon(Grade grade) {
  constexpr const char* kFiles[] = {":/shield_green.svg", ":/shield_amber.svg", ":/shield_red.svg"};
  return QIcon(kFiles[static_cast<std::size_t>(grade)]);
}

namespace {

constexpr int kSize = 16;

}  // namespace

ShieldButton::ShieldButton(Shield& shield, QWidget* parent) : QToolButton(parent), shield_(shield) {
  setObjectName("shield");
  setAutoRaise(true);
  const int size = qRound(kSize * form_scale);
  setIconSize({size, size});
  setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  setFocusPolicy(Qt::NoFocus);
  shield.Observer = [button = QPointer(this)] {
    if (button) button->Refresh();
  };
  Refresh();
}

QSize ShieldButton::sizeHint() const {
  return {QToolButton::sizeHint().width(), iconSize().height() + 2};
}

void ShieldButton::Refresh() {
  setIcon(ShieldIcon(shield_.Worst()));
  setText(shield_.Points() > 0 ? QString::number(shield_.Points()) : QString());
  const QString summary = QString::fromStdString(shield_.Summary());
  setToolTip(summary);
  setAccessibleName(summary);
  // A menu bar gives its corner no more room by itself.
  adjustSize();
}

}  // namespace orvane
