// What the forms with a designed layout have in common.
#pragma once

#include <QPushButton>

#include "ui/twips.h"

namespace orvane {

// A window that can be closed and nothing else.
inline constexpr Qt::WindowFlags kClosable = Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                                             Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint;

// On X11 only a dialog is kept above its owner.
inline constexpr Qt::WindowFlags kFormFlags = Qt::Dialog | kClosable;

// A button in its place; its caption is still to be set.
inline QPushButton* NewButton(const char* name, const Place& place, QWidget* parent) {
  auto* button = new QPushButton(parent);
  button->setObjectName(name);
  button->setGeometry(Pixels(place));
  button->setAutoDefault(false);
  return button;
}

// The button closes its window.
inline void MakeLeaving(QPushButton* button) {
  QObject::connect(button, &QPushButton::clicked, button->window(), &QWidget::close);
}

}  // namespace orvane
