// A test that opens a window in a world of its own and works its parts by their names.
#pragma once

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QLineEdit>
#include <memory>

#include "support/world.h"
#include "ui/parts.h"

namespace orvane::test {

struct OpenedWindow : testing::Test, World {
  void Open(QWidget* made) {
    window.reset(made);
    Present(*window);
  }

  void Push(const QString& button) { Part<QAbstractButton>(*window, button).click(); }
  QLineEdit& Box(const QString& name) { return Part<QLineEdit>(*window, name); }
  QString Focused() const { return window->focusWidget()->objectName(); }

  std::unique_ptr<QWidget> window;
};

}  // namespace orvane::test
