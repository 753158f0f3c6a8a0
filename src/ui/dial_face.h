// The dial face of the main window: six quarter circles with needles.
#pragma once

#include <QWidget>
#include <functional>

#include "app/panel.h"
#include "app/state.h"

class QPainter;

namespace orvane {

class TextLabel;

class DialFace : public QWidget {
  Q_OBJECT

 public:
  // `double_click` runs at a double click on the face itself; needles are part of it.
  DialFace(const State& state, Panel& panel, std::function<void()> double_click, QWidget* parent);

  // A needle as it is drawn, in logical pixels of the face.
  QLineF NeedleLine(Gauge gauge) const;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;

 private:
  void AddDial(Gauge gauge);
  void ShowCaption(Gauge gauge);
  void NeedleMoved(Gauge gauge);
  void PaintPlate(QPainter& painter, Gauge gauge) const;
  void PaintNeedle(QPainter& painter, Gauge gauge);

  struct Dial {
    TextLabel* caption = nullptr;
    TextLabel* unit = nullptr;  // null where the caption has the unit in it
    TextLabel* read_out = nullptr;
    QRect painted;  // what the needle covered when it was painted last
  };

  const State& state_;
  Panel& panel_;
  std::function<void()> double_click_;
  PerGauge<Dial> dials_;
};

}  // namespace orvane
