#include "ui/chart_curves.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

namespace orvane {
namespace {

constexpr int kBandAlpha = 80;

constexpr PerGauge<QColor> kColours = {std::array{QColor(37, 99, 235), QColor(22, 150, 70),
                                                  QColor(205, 105, 10), QColor(8, 140, 165),
                                                  QColor(150, 80, 225), QColor(225, 60, 75)}};

}  // namespace

QColor CurveColour(Gauge gauge) {
  return kColours[gauge];
}

PerGauge<Columns> ColumnsOf(const std::vector<Sample>& samples, std::chrono::seconds width,
                            const TimeAxis& axis, double pixel_ratio) {
  const int count = std::max(1, static_cast<int>(axis.width * pixel_ratio));
  PerGauge<Columns> columns;
  for (Columns& of_gauge : columns) of_gauge.resize(static_cast<std::size_t>(count));
  const double scale = count / static_cast<double>((axis.to - axis.from).count());
  for (const Sample& sample : samples) {
    const auto column_at = [&](sys_seconds time) {
      return static_cast<double>((time - axis.from).count()) * scale;
    };
    const int first = std::max(0, static_cast<int>(std::floor(column_at(sample.begin))));
    const int end = std::min(count, static_cast<int>(std::ceil(column_at(sample.begin + width))));
    for (int at = first; at < end; ++at) {
      for (const Gauge gauge : kGauges) {
        const Spread& spread = sample.values[gauge];
        Column& column = columns[gauge][static_cast<std::size_t>(at)];
        const auto least = static_cast<double>(spread.least);
        const auto most = static_cast<double>(spread.most);
        column.least = column.readings > 0 ? std::min(column.least, least) : least;
        column.most = column.readings > 0 ? std::max(column.most, most) : most;
        column.sum += static_cast<double>(spread.sum);
        column.readings += static_cast<double>(sample.readings);
      }
    }
  }
  return columns;
}

void DrawCurve(QPainter& painter, const Columns& columns, const QRectF& place,
               const ValueScale& scale, const QColor& colour, double pixel_ratio) {
  const auto y_of = [&](double value) {
    return place.bottom() - place.height() * (value / 100 - scale.low) / (scale.high - scale.low);
  };
  QColor band = colour;
  band.setAlpha(kBandAlpha);
  for (std::size_t begin = 0; begin < columns.size();) {
    // Each run of columns without a gap is a figure of its own; a lone one is as wide as a pixel.
    QPolygonF most, least, mean;
    std::size_t end = begin;
    for (; end < columns.size() && columns[end].readings > 0; ++end) {
      const Column& column = columns[end];
      const double x = place.left() + static_cast<double>(end) / pixel_ratio;
      const double next = place.left() + static_cast<double>(end + 1) / pixel_ratio;
      for (const double edge : {x, next}) {
        most.append({edge, y_of(column.most)});
        least.prepend({edge, y_of(column.least)});
      }
      mean.append({x, y_of(column.sum / column.readings)});
    }
    if (end > begin) {
      mean.append({mean.back().x() + 1 / pixel_ratio, mean.back().y()});
      painter.setPen(Qt::NoPen);
      painter.setBrush(band);
      painter.drawPolygon(most + least);
      painter.setBrush(Qt::NoBrush);
      painter.setPen(QPen(colour, 1));
      painter.drawPolyline(mean);
    }
    begin = end + 1;
  }
}

}  // namespace orvane
