// The needle face of the main form: six quarter-circle dials, drawn on the picture `Image2`.
#pragma once

#include <QWidget>
#include <array>
#include <functional>

#include "app/panel.h"
#include "app/state.h"

class QPainter;

namespace orvane {

class TextLabel;

class DialFace : public QWidget {
  Q_OBJECT

 public:
  // `double_click` runs at a double click on the picture itself; needles are part of it.
  DialFace(const State& state, Panel& panel, std::function<void()> double_click, QWidget* parent);

  // A needle as it is drawn, in logical pixels of the picture.
  QLineF NeedleLine(std::size_t gauge) const;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;

 private:
  void AddDial(std::size_t gauge);
  void ShowCaption(std::size_t gauge);
  void NeedleMoved(std::size_t gauge);
  void PaintPlate(QPainter& painter, std::size_t gauge) const;
  void PaintNeedle(QPainter& painter, std::size_t gauge);

  struct Dial {
    TextLabel* caption = nullptr;
    TextLabel* unit = nullptr;  // null where the caption has the unit in it
    TextLabel* read_out = nullptr;
    QRect painted;  // what the needle covered when it was painted last
  };

  const State& state_;
  Panel& panel_;
  std::function<void()> double_click_;
  std::array<Dial, kGauges> dials_;
};

}  // namespace orvane
