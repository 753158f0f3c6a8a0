// The curve of one measured value: a band from the lowest to the highest, and a line of the mean.
#pragma once

#include <QColor>
#include <QRectF>
#include <vector>

#include "ui/chart_axes.h"

class QPainter;

namespace orvane {

// Legible on a light ground and on a dark one.
QColor CurveColour(Gauge gauge);

// What falls on a column of the screen's own pixels, in hundredths; nothing where `readings` is 0.
struct Column {
  double least = 0, sum = 0, most = 0;
  double readings = 0;
};

using Columns = std::vector<Column>;

// From the left end of the axis to its right one. Each sample covers `width` of the time.
PerGauge<Columns> ColumnsOf(const std::vector<Sample>& samples, std::chrono::seconds width,
                            const TimeAxis& axis, double pixel_ratio);

// Into `place`, whose left edge is that of the columns. A column without readings breaks the line.
void DrawCurve(QPainter& painter, const Columns& columns, const QRectF& place,
               const ValueScale& scale, const QColor& colour, double pixel_ratio);

}  // namespace orvane
