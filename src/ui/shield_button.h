// The shield in the menu bar: how well the computer is protected, at a glance.
#pragma once

#include <QIcon>
#include <QToolButton>

#include "app/panel.h"

namespace orvane {

// The shield of a grade. Each has a shape of its own beside its colour.
QIcon ShieldIcon(Grade grade);

class ShieldButton : public QToolButton {
  Q_OBJECT

 public:
  // Follows `shield`, which has to outlive the button.
  ShieldButton(Shield& shield, QWidget* parent);

  // No higher than a menu's title, so that the menu bar keeps its height.
  QSize sizeHint() const override;

 private:
  void Refresh();

  const Shield& shield_;
};

}  // namespace orvane
