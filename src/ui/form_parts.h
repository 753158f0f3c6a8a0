// What the forms with a designed layout have in common.
#pragma once

#include <QPushButton>
#include <QShortcut>

#include "ui/twips.h"

namespace orvane {

// A window that can be closed and nothing else.
inline constexpr Qt::WindowFlags kClosable = Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                                             Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint;

// On X11 only a dialog is kept above its owner.
inline constexpr Qt::WindowFlags kFormFlags = Qt::Dialog | kClosable;

// A button in its place; its caption is still to be set. Enter clicks it while it has the focus.
inline QPushButton* NewButton(const char* name, const Place& place, QWidget* parent) {
  auto* button = new QPushButton(parent);
  button->setObjectName(name);
  button->setGeometry(Pixels(place));
  button->setAutoDefault(true);
  return button;
}

// The button closes its window, and so does Escape.
inline void MakeLeaving(QPushButton* button) {
  QWidget* form = button->window();
  QObject::connect(button, &QPushButton::clicked, form, &QWidget::close);
  QObject::connect(new QShortcut(Qt::Key_Escape, form), &QShortcut::activated, form,
                   &QWidget::close);
}

}  // namespace orvane
