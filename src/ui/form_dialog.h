// What every window but the main one is to the desktop: a dialog that belongs to the window that it
// came from, and that Escape closes.
#pragma once

#include <QDialog>
#include <QRect>
#include <vector>

namespace orvane {

// Which part of a window's growth the edges of a part of it go along with, from 0 to 1.
struct Shares {
  double left = 0, top = 0, right = 0, bottom = 0;
};

class FormDialog : public QDialog {
 public:
  // However it is closed, it is closed as by its frame's button.
  void reject() override { close(); }

  QSize sizeHint() const override;

 protected:
  explicit FormDialog(Qt::WindowFlags flags) : QDialog(nullptr, flags) {}

  // The user may make the window larger from now on, but not smaller than it is. Its parts stay
  // where they are, but for those below.
  void MakeResizable();

  // `part` goes along with the window's growth.
  void Anchor(QWidget* part, const Shares& shares);

  void closeEvent(QCloseEvent* event) override;
  // Enter clicks the button that has the focus, and no other.
  void keyPressEvent(QKeyEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  struct Anchored {
    QWidget* part;
    QRect place;  // in the window as it was made
    Shares shares;
  };

  std::vector<Anchored> anchored_;
  bool resizable_ = false;
};

}  // namespace orvane
