#include "ui/chart_curves.h"

#include <QPainter>
#include <algorithm>
#include <cmath>
#include <optional>

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

std::vector<Column> ColumnsOf(const std::vector<Sample>& samples, std::chrono::seconds width,
                              Gauge gauge, const TimeAxis& axis, double pixel_ratio) {
  const int count = std::max(1, static_cast<int>(axis.width * pixel_ratio));
  std::vector<Column> columns(static_cast<std::size_t>(count));
  const double scale = count / static_cast<double>((axis.to - axis.from).count());
  for (const Sample& sample : samples) {
    const auto column_at = [&](sys_seconds time) {
      return static_cast<double>((time - axis.from).count()) * scale;
    };
    const int first = static_cast<int>(std::floor(column_at(sample.begin)));
    const int end = static_cast<int>(std::ceil(column_at(sample.begin + width)));
    const Spread& spread = sample.values[gauge];
    const double least = static_cast<double>(spread.least) / 100;
    const double most = static_cast<double>(spread.most) / 100;
    for (int at = std::max(0, first); at < std::min(count, end); ++at) {
      Column& column = columns[static_cast<std::size_t>(at)];
      column.least = column.readings > 0 ? std::min(column.least, least) : least;
      column.most = column.readings > 0 ? std::max(column.most, most) : most;
      column.sum += static_cast<double>(spread.sum) / 100;
      column.readings += static_cast<double>(sample.readings);
    }
  }
  return columns;
}

void DrawCurve(QPainter& painter, const std::vector<Column>& columns, const QRectF& place,
               const ValueScale& scale, const QColor& colour, double pixel_ratio) {
  const auto y_of = [&](double value) {
    return place.bottom() - place.height() * (value - scale.low) / (scale.high - scale.low);
  };
  QColor band = colour;
  band.setAlpha(kBandAlpha);
  QVector<QLineF> bands, means;
  std::optional<QPointF> before;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    const Column& column = columns[i];
    if (column.readings <= 0) {
      before.reset();
      continue;
    }
    const double x = place.left() + (static_cast<double>(i) + 0.5) / pixel_ratio;
    const QPointF mean(x, y_of(column.sum / column.readings));
    bands.append({x, y_of(column.least), x, y_of(column.most)});
    // A lone column is still to be seen.
    means.append({before.value_or(mean - QPointF(0.5 / pixel_ratio, 0)), mean});
    before = mean;
  }
  painter.setPen(QPen(band, 1 / pixel_ratio));
  painter.drawLines(bands);
  painter.setPen(QPen(colour, 1));
  painter.drawLines(means);
}

}  // namespace orvane
