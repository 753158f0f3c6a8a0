// What the forms with a designed layout have in common.
#pragma once

#include <QPushButton>

#include "ui/twips.h"

namespace orvane {

// A window of fixed size that can be closed and nothing else.
inline constexpr Qt::WindowFlags kFormFlags = Qt::Window | Qt::CustomizeWindowHint |
                                              Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                                              Qt::WindowCloseButtonHint;

// A button in its place; its caption is still to be set.
inline QPushButton* NewButton(const char* name, const Place& place, QWidget* parent) {
  auto* button = new QPushButton(parent);
  button->setObjectName(name);
  button->setGeometry(Pixels(place));
  return button;
}

}  // namespace orvane
