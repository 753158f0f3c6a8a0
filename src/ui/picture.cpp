#include "ui/picture.h"

#include <QMouseEvent>
#include <QPainter>

namespace orvane {

Picture::Picture(const QString& name, const QString& file, const Place& place, QWidget* parent)
    : QWidget(parent), drawing_(file) {
  setObjectName(name);
  setGeometry(Pixels(place));
}

void Picture::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  drawing_.render(&painter, QRectF(rect()));
}

void Picture::mousePressEvent(QMouseEvent* event) {
  event->accept();
}

void Picture::mouseReleaseEvent(QMouseEvent* event) {
  event->accept();
}

}  // namespace orvane
