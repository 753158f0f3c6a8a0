// What stands on the screen while the program starts.
#pragma once

#include <QWidget>

#include "platform/forms.h"

namespace orvane {

class SplashWindow : public QWidget {
  Q_OBJECT

 public:
  // A key press and a click on the bare frame unload the form from `forms`.
  explicit SplashWindow(Forms& forms);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  Forms& forms_;
  bool pressed_ = false;  // the left button went down on the bare frame and is still held
};

}  // namespace orvane
