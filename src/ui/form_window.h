// What the small windows of the program have in common.
#pragma once

#include "ui/form_dialog.h"

class QAbstractButton;
class QVBoxLayout;

namespace orvane {

// A window of fixed size. Enter clicks the button that has the focus, else the accepting one;
// Escape clicks the leaving one.
class FormWindow : public FormDialog {
 protected:
  static constexpr int kMargin = 12;

  // `name` is the object name.
  FormWindow(const char* name, const QString& title);

  // The column that the window's parts are to stand in; it makes the window as large as they need.
  // To be called once.
  QVBoxLayout* AddColumn();

  // Both belong to the window; to be given once.
  void Buttons(QAbstractButton* accept, QAbstractButton* leave);

  void keyPressEvent(QKeyEvent* event) override;

 private:
  QAbstractButton* accept_ = nullptr;
  QAbstractButton* leave_ = nullptr;
};

}  // namespace orvane
