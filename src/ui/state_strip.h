// The five state lines at the top of the main window.
#pragma once

#include <QWidget>
#include <array>

#include "app/panel.h"

namespace orvane {

class TextLabel;

class StateStrip : public QWidget {
  Q_OBJECT

 public:
  StateStrip(Panel& panel, QWidget* parent);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  struct Line {
    TextLabel* caption;
    TextLabel* state;
    bool fault = false;
  };

  void Refresh(std::size_t i);

  Panel& panel_;
  std::array<Line, 5> lines_;
};

}  // namespace orvane
