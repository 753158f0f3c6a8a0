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
  painter.setPen(look::kInk);
  painter.setBrush(colour_);
  painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

// A number that is always to be read whole: two digits take the room up to the frame's edge, and
// more of them reach over it, short of the next hour's mark. The figures are as large as that room
// allows.
class DayGrid::Count : public QWidget {
 public:
  Count(const Place& place, int frame_right, QWidget* parent)
      : QWidget(parent), place_(place), to_edge_(frame_right - place.left) {}

  void Show(int count) {
    constexpr int kToNextMark = 285;
    text_ = QString::number(count);
    Place place = place_;
    if (text_.size() > 1) place.width = text_.size() > 2 ? kToNextMark : to_edge_;
    setGeometry(Pixels(place));
    update();
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    // A little narrower is better read than smaller; from the least size on there is no choice.
    constexpr double kNarrow = 0.85;
    constexpr int kLeast = 10;
    QPainter painter(this);
    painter.setPen(look::kInk);
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
  mark = new ColourBox(QString("mark_%1").arg(cell),
                       {place.mark_left, place.mark_top, kMarkWidth, kMarkHeight},
                       ColourOf(place.row), this);
  count_label = new Count({place.count_left, place.count_top, kCountWidth, kCountHeight},
                          FrameOf(cell % kHours).Right(), this);
  count_label->setObjectName(QString("count_%1").arg(cell));
}

QString DayGrid::Sentence(int cell, int count) const {
  const QString hour = TwoDigits(cell % kHours);
  return QString("%1:00–%1:59  %2: %3")
      .arg(hour, kinds_[static_cast<std::size_t>(cell / kHours)])
      .arg(count);
}

void DayGrid::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setFont(look::Face(kFontSize));
  for (int hour = 0; hour < kHours; ++hour) {
    painter.setPen(look::kEdge);
    painter.setBrush(look::kCard);
    // Neighbours share a line.
    painter.drawRect(Pixels(FrameOf(hour)).adjusted(0, 0, 0, -1));
    painter.setPen(look::kQuietInk);
    painter.drawText(Pixels(HourNumberOf(hour)), Qt::AlignCenter, TwoDigits(hour));
  }
}

}  // namespace orvane
