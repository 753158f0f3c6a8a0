// A drawing at a fixed place of a form, sharp at every pixel ratio.
#pragma once

#include <QSvgRenderer>
#include <QWidget>

#include "ui/twips.h"

namespace orvane {

class Picture : public QWidget {
  Q_OBJECT

 public:
  // `file` names an SVG drawing, in the program or on disk.
  Picture(const QString& name, const QString& file, const Place& place, QWidget* parent);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QSvgRenderer drawing_;
};

}  // namespace orvane
