#include "ui/picture.h"

#include <QPainter>

namespace orvane {

Picture::Picture(const QString& name, const QString& file, const Place& place, QWidget* parent)
    : QWidget(parent), drawing_(file) {
  setObjectName(name);
  setGeometry(Pixels(place));
  // A click on a picture is no click on what lies beneath.
  setAttribute(Qt::WA_NoMousePropagation);
}

void Picture::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  drawing_.render(&painter, QRectF(rect()));
}

}  // namespace orvane
