// A box of the settings dialog that takes digits.
#pragma once

#include <QLineEdit>
#include <functional>

namespace orvane {

class NumberBox : public QLineEdit {
 public:
  // Both belong to the owner. A typed character passes when `Takes` says so; the editing keys
  // and a paste always do.
  std::function<bool(int character)> Takes;
  std::function<void()> LostFocus;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void inputMethodEvent(QInputMethodEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  bool Passes(const QString& typed) const;
};

}  // namespace orvane
