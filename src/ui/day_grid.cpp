#include "ui/day_grid.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QStringList>
#include <algorithm>

#include "ui/look.h"
#include "ui/words.h"

namespace orvane {
namespace {

constexpr int kHours = 24;
constexpr int kFrameWidth = 600;
constexpr int kFrameHeight = 1605;
constexpr int kFontSize = 16;

// By row of the grid. The messages are those of the legend, which begin with a sign.
constexpr Message kKinds[] = {Message::kScheduleLegend, Message::kMainsLegend,
                              Message::kBatteryLegend};
constexpr QLatin1String kSign("= ");

// Of the window as designed: above and below the frames everything keeps its height.
constexpr int kDesignedWidth = 7680;
constexpr int kDesignedHeight = 5760;
constexpr int kFramesTop = 825;
constexpr int kFramesHeight = 3495;

constexpr Place FrameOf(int hour) {
  return hour < 12 ? Place{165 + kFrameWidth * hour, 825, kFrameWidth, kFrameHeight}
                   : Place{180 + kFrameWidth * (hour - 12), 2715, kFrameWidth, kFrameHeight};
}

// From its given top down to the lower edge of the frame.
constexpr Place HourNumberOf(int hour) {
  const Place frame = FrameOf(hour);
  const int top = hour < 12 ? 2160 : 4020;
  return {frame.left, top, frame.width, frame.Bottom() - top};
}

Place MarkOf(int cell) {
  const CellPlace place = PlaceOf(cell);
  return {place.mark_left, place.mark_top, kMarkWidth, kMarkHeight};
}

QString TwoDigits(int number) {
  return QString("%1").arg(number, 2, 10, QChar(u'0'));
}

}  // namespace

ColourBox::ColourBox(const QString& name, const Place& place, const MarkColour& colour,
                     QWidget* parent)
    : QWidget(parent), colour_(colour.red, colour.green, colour.blue) {
  setObjectName(name);
  setGeometry(Pixels(place));
}

void ColourBox::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setPen(QColor(look::kInk));
  painter.setBrush(colour_);
  painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

// A number that is always to be read whole: two digits take the room up to the frame's edge, and
// more of them reach over it, short of the next hour's mark. The figures are as large as that room
// allows.
class DayGrid::Count : public QWidget {
 public:
  Count(const Place& place, int frame_right, const DayGrid& grid, QWidget* parent)
      : QWidget(parent), grid_(grid), place_(place), to_edge_(frame_right - place.left) {}

  void Show(int count) {
    text_ = QString::number(count);
    Arrange();
  }

  void Arrange() {
    constexpr int kToNextMark = 285;
    Place place = place_;
    if (text_.size() > 1) place.width = text_.size() > 2 ? kToNextMark : to_edge_;
    setGeometry(grid_.At(place));
    update();
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    // A little narrower is better read than smaller; from the least size on there is no choice.
    constexpr double kNarrow = 0.85;
    constexpr int kLeast = 10;
    QPainter painter(this);
    painter.setPen(QColor(look::kInk));
    QFont font = look::Face(kFontSize);
    double advance = QFontMetricsF(font).horizontalAdvance(text_);
    for (int size = kFontSize - 1; advance * kNarrow > width() && size >= kLeast; --size) {
      font = look::Face(size);
      advance = QFontMetricsF(font).horizontalAdvance(text_);
    }
    const double narrowing = std::min(1.0, width() / advance);
    painter.setFont(font);
    painter.scale(narrowing, 1);
    painter.drawText(QRectF(0, 0, width() / narrowing, height()),
                     Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, text_);
  }

 private:
  const DayGrid& grid_;
  Place place_;
  int to_edge_;
  QString text_;
};

DayGrid::DayGrid(const State& state, QWidget* parent) : QWidget(parent) {
  setObjectName("day");
  for (std::size_t row = 0; row < kinds_.size(); ++row) {
    kinds_[row] = Pick(state, kKinds[row]);
    if (kinds_[row].startsWith(kSign)) kinds_[row].remove(0, kSign.size());
  }
}

DayGrid::~DayGrid() = default;

void DayGrid::Show(const DayHistory& history) {
  QStringList sentences;
  for (int cell = 0; cell < kGridCells; ++cell) {
    auto& [mark, count_label] = cells_[static_cast<std::size_t>(cell)];
    const bool visible = history.Visible(cell);
    if (visible && !mark) MakeCell(cell);
    if (!mark) continue;
    mark->setVisible(visible);
    count_label->setVisible(visible);
    if (!visible) continue;
    const int count = history.Count(cell);
    count_label->Show(count);
    sentences += Sentence(cell, count);
    mark->setToolTip(sentences.last());
    mark->setAccessibleName(sentences.last());
    count_label->setToolTip(sentences.last());
    count_label->setAccessibleName(QString::number(count));
  }
  setAccessibleName(QString::fromStdString(history.Date()));
  setAccessibleDescription(sentences.join("; "));
}

void DayGrid::MakeCell(int cell) {
  const CellPlace place = PlaceOf(cell);
  auto& [mark, count_label] = cells_[static_cast<std::size_t>(cell)];
  mark = new ColourBox(QString("mark_%1").arg(cell), MarkOf(cell), ColourOf(place.row), this);
  count_label = new Count({place.count_left, place.count_top, kCountWidth, kCountHeight},
                          FrameOf(cell % kHours).Right(), *this, this);
  mark->setGeometry(At(MarkOf(cell)));
  count_label->setObjectName(QString("count_%1").arg(cell));
}

QString DayGrid::Sentence(int cell, int count) const {
  const QString hour = TwoDigits(cell % kHours);
  return QString("%1:00–%1:59  %2: %3")
      .arg(hour, kinds_[static_cast<std::size_t>(cell / kHours)])
      .arg(count);
}

QRect DayGrid::At(const Place& place) const {
  const double across = width() / Pixels(kDesignedWidth);
  const double down = 1 + (height() - Pixels(kDesignedHeight)) / Pixels(kFramesHeight);
  const auto x = [&](int twips) { return qRound(Pixels(twips) * across); };
  const auto y = [&](int twips) {
    return qRound(Pixels(kFramesTop) + Pixels(twips - kFramesTop) * down);
  };
  const QPoint top_left(x(place.left), y(place.top));
  return {top_left, QSize(x(place.Right()) - top_left.x(), y(place.Bottom()) - top_left.y())};
}

void DayGrid::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  for (int cell = 0; cell < kGridCells; ++cell) {
    const auto& [mark, count_label] = cells_[static_cast<std::size_t>(cell)];
    if (!mark) continue;
    mark->setGeometry(At(MarkOf(cell)));
    count_label->Arrange();
  }
}

void DayGrid::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setFont(look::Face(kFontSize));
  for (int hour = 0; hour < kHours; ++hour) {
    painter.setPen(QColor(look::kEdge));
    painter.setBrush(QColor(look::kCard));
    // Neighbours share a line.
    painter.drawRect(At(FrameOf(hour)).adjusted(0, 0, 0, -1));
    painter.setPen(QColor(look::kQuietInk));
    painter.drawText(At(HourNumberOf(hour)), Qt::AlignCenter, TwoDigits(hour));
  }
}

}  // namespace orvane
