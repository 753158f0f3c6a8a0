#include "ui/dial_face.h"

#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QPointer>
#include <algorithm>
#include <cmath>
#include <numbers>
#include <optional>

#include "ui/element_name.h"
#include "ui/gauge_look.h"
#include "ui/look.h"
#include "ui/text_label.h"
#include "ui/twips.h"

namespace orvane {
namespace {

// All places below are in twips of the form.
constexpr Place kImage2{15, 825, 7725, 3600};

constexpr std::size_t kMarks = 6;
constexpr std::optional<std::size_t> kNone;

struct DialRow {
  Place plate;
  QPointF pivot;
  std::size_t caption;              // element of Label9
  std::optional<std::size_t> unit;  // element of Label9 that tells the unit,
  const char* own_unit;             // or a unit of its own and its label's name,
  const char* own_unit_name;        // or none: the caption has it
  double lowest, highest;           // values of the first and the last mark
  int marks[kMarks - 2];            // elements of Label12 that name the marks, all but two:
  int last_marks;                   // the last ones have this element of Label11 and Label10
};

constexpr int kUpperTop = 885;
constexpr int kLowerTop = 2655;
constexpr int kPlateWidth = 2475;
constexpr int kPlateHeight = 1710;
constexpr int kColumnLeft[] = {75, 2640, 5205};

constexpr Place Plate(int column, int top) {
  return {kColumnLeft[column], top, kPlateWidth, kPlateHeight};
}

// In the order of Label2.
constexpr DialRow kDials[kGauges] = {
    {Plate(0, kUpperTop), {615, 2325}, 0, 1, nullptr, nullptr, 200, 250, {3, 2, 1, 0}, 0},
    {Plate(1, kUpperTop), {3315, 2325}, 2, 3, nullptr, nullptr, 200, 250, {7, 6, 5, 4}, 1},
    {Plate(2, kUpperTop), {5910, 2340}, 4, kNone, nullptr, nullptr, 0, 125, {20, 21, 22, 23}, 5},
    {Plate(2, kLowerTop), {5895, 3990}, 7, kNone, nullptr, nullptr, 0, 100, {15, 14, 13, 12}, 3},
    {Plate(0, kLowerTop), {630, 4005}, 5, kNone, "(HZ)", "Label16", 30, 80, {8, 9, 10, 11}, 2},
    {Plate(1, kLowerTop), {3330, 4005}, 6, kNone, "(℃)", "Label17", 0, 75, {19, 18, 17, 16}, 4},
};

// Distances from the pivot. The longest needle is 810.
constexpr double kFieldRadius = 840;
constexpr double kBandRadius = 870;
constexpr double kBandWidth = 60;
constexpr double kTickFrom = 840;
constexpr double kTickTo = 930;
constexpr double kFineTickTo = 900;
constexpr double kMarkRadius = 1095;
constexpr int kMarkWidth = 345;
constexpr int kMarkHeight = 180;
constexpr int kDegreesPerMark = 18;
constexpr int kFineTicksPerMark = 2;
constexpr double kHubRadius = 75;

// Caption and read-out stand in the plate's upper right corner, which the scale leaves free.
constexpr int kRightInset = 120;
constexpr int kCaptionTop = 105;
constexpr int kCaptionHeight = 225;
constexpr int kCaptionWidth = 1080;
constexpr int kReadOutTop = 390;
constexpr int kReadOutWidth = 645;
constexpr int kReadOutHeight = 300;

constexpr TextLabel::Style kMarkStyle{
    .size = 11, .least = 9, .alignment = Qt::AlignCenter, .ink = look::kQuietInk};
constexpr TextLabel::Style kCaptionStyle{
    .size = 12, .least = 10, .alignment = Qt::AlignRight | Qt::AlignVCenter};
constexpr TextLabel::Style kReadOutStyle{.size = 15,
                                         .least = 9,
                                         .bold = true,
                                         .alignment = Qt::AlignCenter,
                                         .ink = look::kCard,
                                         .ground = look::Exact(look::kReadOutGround)};

QPointF OnPicture(double x, double y) {
  return {Pixels(x - kImage2.left), Pixels(y - kImage2.top)};
}

QString MarkName(const DialRow& dial, std::size_t mark) {
  if (mark < kMarks - 2) return ElementName("Label12", dial.marks[mark]);
  return ElementName(mark < kMarks - 1 ? "Label11" : "Label10", dial.last_marks);
}

// The room for the caption and the unit.
Place CaptionPlace(const DialRow& dial) {
  return Place{dial.plate.Right() - kRightInset - kCaptionWidth, dial.plate.top + kCaptionTop,
               kCaptionWidth, kCaptionHeight}
      .Inside(kImage2);
}

Place ReadOutPlace(const DialRow& dial) {
  return Place{dial.plate.Right() - kRightInset - kReadOutWidth, dial.plate.top + kReadOutTop,
               kReadOutWidth, kReadOutHeight}
      .Inside(kImage2);
}

// The point at `radius` twips from a dial's pivot, `degrees` above the rest position.
QPointF AtAngle(const DialRow& dial, double radius, double degrees) {
  const double angle = degrees * std::numbers::pi / 180;
  return OnPicture(dial.pivot.x() + radius * std::cos(angle),
                   dial.pivot.y() - radius * std::sin(angle));
}

QRectF Circle(const DialRow& dial, double radius) {
  const QPointF pivot = OnPicture(dial.pivot.x(), dial.pivot.y());
  const double r = Pixels(radius);
  return {pivot.x() - r, pivot.y() - r, 2 * r, 2 * r};
}

double Degrees(const DialRow& dial, double value) {
  return std::clamp((value - dial.lowest) / (dial.highest - dial.lowest), 0.0, 1.0) * 90;
}

// What a needle on this line may touch, its thickness included.
QRect Covered(const QLineF& needle) {
  const QRect box = QRectF(needle.p1(), needle.p2()).normalized().toAlignedRect();
  return box.adjusted(-3, -3, 3, 3);
}

void DrawArc(QPainter& painter, const DialRow& dial, double from, double to, const QColor& colour) {
  painter.setPen(QPen(colour, Pixels(kBandWidth), Qt::SolidLine, Qt::FlatCap));
  painter.setBrush(Qt::NoBrush);
  painter.drawArc(Circle(dial, kBandRadius), qRound(from * 16), qRound((to - from) * 16));
}

}  // namespace

DialFace::DialFace(const State& state, Panel& panel, std::function<void()> double_click,
                   QWidget* parent)
    : QWidget(parent), state_(state), panel_(panel), double_click_(std::move(double_click)) {
  setObjectName("Image2");
  setGeometry(Pixels(kImage2));
  setAttribute(Qt::WA_OpaquePaintEvent);
  for (std::size_t gauge = 0; gauge < kGauges; ++gauge) AddDial(gauge);
}

void DialFace::AddDial(std::size_t gauge) {
  const DialRow& row = kDials[gauge];
  Dial& dial = dials_[gauge];
  for (std::size_t k = 0; k < kMarks; ++k) {
    const QPointF centre = AtAngle(row, kMarkRadius, static_cast<double>(k) * kDegreesPerMark);
    auto* mark = new TextLabel(MarkName(row, k), {0, 0, kMarkWidth, kMarkHeight}, kMarkStyle, this);
    mark->move(qRound(centre.x() - mark->width() / 2.0), qRound(centre.y() - mark->height() / 2.0));
    const double step = (row.highest - row.lowest) / (kMarks - 1);
    mark->Show(QString::number(row.lowest + step * static_cast<double>(k)));
  }

  const auto follow = [&](std::size_t element) {
    auto* label =
        new TextLabel(ElementName("Label9", element), CaptionPlace(row), kCaptionStyle, this);
    panel_.Label9[element].Observer = [self = QPointer(this), gauge] {
      if (self) self->ShowCaption(gauge);
    };
    return label;
  };
  dial.caption = follow(row.caption);
  if (row.unit) {
    dial.unit = follow(*row.unit);
  } else if (row.own_unit) {
    dial.unit = new TextLabel(row.own_unit_name, CaptionPlace(row), kCaptionStyle, this);
    dial.unit->Show(QString::fromUtf8(row.own_unit));
  }

  dial.read_out =
      new TextLabel(ElementName("Label2", gauge), ReadOutPlace(row), kReadOutStyle, this);
  dial.read_out->Follow(panel_.Label2[gauge]);
  panel_.Line1[gauge].Observer = [self = QPointer(this), gauge] {
    if (self) self->NeedleMoved(gauge);
  };
  ShowCaption(gauge);
}

// The unit keeps to the right edge and is as wide as its text; the caption ends before it.
void DialFace::ShowCaption(std::size_t gauge) {
  const DialRow& row = kDials[gauge];
  Dial& dial = dials_[gauge];
  QRect place = Pixels(CaptionPlace(row));
  if (dial.unit) {
    // All the room there is, so that the text is measured whole.
    dial.unit->setGeometry(place);
    if (row.unit) dial.unit->Show(panel_.Label9[*row.unit]);
    const int width = static_cast<int>(std::ceil(dial.unit->Advance()));
    dial.unit->setGeometry(place.right() + 1 - width, place.top(), width, place.height());
    place.setWidth(place.width() - width - static_cast<int>(Pixels(45)));
  }
  dial.caption->setGeometry(place);
  dial.caption->Show(panel_.Label9[row.caption]);
  dial.read_out->Spoken(SpokenName(state_, gauge) + ", ", ' ' + Unit(gauge));
}

QLineF DialFace::NeedleLine(std::size_t gauge) const {
  const Needle::Ends& line = panel_.Line1[gauge].Line();
  return {OnPicture(static_cast<double>(line.x1), static_cast<double>(line.y1)),
          OnPicture(static_cast<double>(line.x2), static_cast<double>(line.y2))};
}

void DialFace::NeedleMoved(std::size_t gauge) {
  update(Covered(NeedleLine(gauge)).united(dials_[gauge].painted));
}

void DialFace::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  painter.fillRect(event->rect(), look::kBoard);
  painter.setRenderHint(QPainter::Antialiasing);
  for (std::size_t gauge = 0; gauge < kGauges; ++gauge) {
    if (!event->region().intersects(Pixels(kDials[gauge].plate.Inside(kImage2)))) continue;
    PaintPlate(painter, gauge);
    PaintNeedle(painter, gauge);
  }
}

void DialFace::PaintPlate(QPainter& painter, std::size_t gauge) const {
  const DialRow& row = kDials[gauge];
  const QRectF plate = QRectF(Pixels(row.plate.Inside(kImage2))).adjusted(0.5, 0.5, -0.5, -0.5);
  painter.setPen(QPen(look::kHairline, 1));
  painter.setBrush(look::kCard);
  painter.drawRoundedRect(plate, 6, 6);

  painter.setPen(Qt::NoPen);
  painter.setBrush(look::kWindow);
  painter.drawPie(Circle(row, kFieldRadius), 0, 90 * 16);
  DrawArc(painter, row, 0, 90, look::kHairline);
  const Zone danger = DangerZone(gauge);
  if (danger.from < danger.to) {
    DrawArc(painter, row, Degrees(row, danger.from), Degrees(row, danger.to), look::kDangerZone);
  }
  constexpr int kTicks = static_cast<int>(kMarks - 1) * kFineTicksPerMark;
  for (int i = 0; i <= kTicks; ++i) {
    const bool mark = i % kFineTicksPerMark == 0;
    const double degrees = 90.0 * i / kTicks;
    painter.setPen(QPen(mark ? look::kInk : look::kQuietInk, mark ? 1.6 : 0.8));
    painter.drawLine(AtAngle(row, kTickFrom, degrees),
                     AtAngle(row, mark ? kTickTo : kFineTickTo, degrees));
  }
}

void DialFace::PaintNeedle(QPainter& painter, std::size_t gauge) {
  const QLineF line = NeedleLine(gauge);
  painter.setPen(QPen(look::Exact(look::kNeedleBlue), 2, Qt::SolidLine, Qt::FlatCap));
  painter.drawLine(line);
  painter.setPen(Qt::NoPen);
  painter.setBrush(look::kInk);
  painter.drawEllipse(Circle(kDials[gauge], kHubRadius));
  dials_[gauge].painted = Covered(line);
}

void DialFace::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) double_click_();
}

}  // namespace orvane
