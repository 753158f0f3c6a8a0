// The two lines at the bottom of the main window: warnings, and what the program is doing.
#pragma once

#include <QWidget>

#include "app/panel.h"

namespace orvane {

class TextLabel;

// One line for both warnings. A warning alone has all of it; two of them stand one above the other
// in half its height, so that neither loses a word.
class WarningLine : public QWidget {
  Q_OBJECT

 public:
  WarningLine(Panel& panel, QWidget* parent);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void Refresh();

  Panel& panel_;
  TextLabel* supply_;
  TextLabel* overload_;
  bool lit_ = false;  // any of the two can be seen
};

class StatusLine : public QWidget {
  Q_OBJECT

 public:
  StatusLine(Panel& panel, QWidget* parent);

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace orvane
