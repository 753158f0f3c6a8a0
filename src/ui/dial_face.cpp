#include "ui/dial_face.h"

#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QPointer>
#include <algorithm>
#include <cmath>
#include <numbers>

#include "ui/gauge_look.h"
#include "ui/look.h"
#include "ui/text_label.h"
#include "ui/twips.h"

namespace orvane {
namespace {

// All places below are in twips of the form.
constexpr Place kFace{15, 825, 7725, 3600};

constexpr int kMarks = 6;
// A unit beside the caption comes from the panel or stands here; where there is none, the caption
// has it.
struct DialRow {
  Place plate;
  QPointF pivot;
  double lowest, highest;  // values of the first and the last mark
  Label Panel::*unit = nullptr;
  const char* fixed_unit = nullptr;
};

constexpr int kUpperTop = 885;
constexpr int kLowerTop = 2655;
constexpr int kPlateWidth = 2475;
constexpr int kPlateHeight = 1710;
constexpr int kColumnLeft[] = {75, 2640, 5205};

constexpr Place Plate(int column, int top) {
  return {kColumnLeft[column], top, kPlateWidth, kPlateHeight};
}

constexpr PerGauge<DialRow> kDials = {{{
    {Plate(0, kUpperTop), {615, 2325}, 200, 250, &Panel::input_unit},
    {Plate(1, kUpperTop), {3315, 2325}, 200, 250, &Panel::output_unit},
    {Plate(2, kUpperTop), {5910, 2340}, 0, 125},
    {Plate(2, kLowerTop), {5895, 3990}, 0, 100},
    {Plate(0, kLowerTop), {630, 4005}, 30, 80, nullptr, "(HZ)"},
    {Plate(1, kLowerTop), {3330, 4005}, 0, 75, nullptr, "(℃)"},
}}};

// Distances from the pivot. The longest needle is 810.
constexpr double kFieldRadius = 840;
constexpr double kBandRadius = 870;
constexpr double kBandWidth = 60;
constexpr double kTickFrom = 840;
constexpr double kTickTo = 930;
constexpr double kFineTickTo = 900;
constexpr double kMarkGap = 45;
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
                                         .ink = QColor(255, 255, 255),
                                         .ground = look::Exact(look::kReadOutGround)};

QPointF OnPicture(double x, double y) {
  return {Pixels(x - kFace.left), Pixels(y - kFace.top)};
}

// The room for the caption and the unit.
Place CaptionPlace(const DialRow& dial) {
  return Place{dial.plate.Right() - kRightInset - kCaptionWidth, dial.plate.top + kCaptionTop,
               kCaptionWidth, kCaptionHeight}
      .Inside(kFace);
}

Place ReadOutPlace(const DialRow& dial) {
  return Place{dial.plate.Right() - kRightInset - kReadOutWidth, dial.plate.top + kReadOutTop,
               kReadOutWidth, kReadOutHeight}
      .Inside(kFace);
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
  setObjectName("dial_face");
  setGeometry(Pixels(kFace));
  setAttribute(Qt::WA_OpaquePaintEvent);
  for (const Gauge gauge : kGauges) AddDial(gauge);
}

void DialFace::AddDial(Gauge gauge) {
  const DialRow& row = kDials[gauge];
  Dial& dial = dials_[gauge];
  for (int k = 0; k < kMarks; ++k) {
    const double value = row.lowest + (row.highest - row.lowest) / (kMarks - 1) * k;
    const QString text = QString::number(value);
    auto* mark = new TextLabel(Id(gauge) + "_dial_mark_" + text, {0, 0, kMarkWidth, kMarkHeight},
                               kMarkStyle, this);
    // The figures end at the same distance from the ticks in every direction.
    const QSizeF ink = QFontMetricsF(look::Face(kMarkStyle.size)).tightBoundingRect(text).size();
    const double angle = k * kDegreesPerMark * std::numbers::pi / 180;
    const double reach = (ink.width() * std::cos(angle) + ink.height() * std::sin(angle)) / 2;
    const QPointF tick = AtAngle(row, kTickTo + kMarkGap, k * kDegreesPerMark);
    const QPointF centre = tick + QPointF(reach * std::cos(angle), -reach * std::sin(angle));
    mark->move(qRound(centre.x() - mark->width() / 2.0), qRound(centre.y() - mark->height() / 2.0));
    mark->Show(text);
  }

  const auto add = [&](const char* name) {
    return new TextLabel(Id(gauge) + name, CaptionPlace(row), kCaptionStyle, this);
  };
  const auto show_caption = [self = QPointer(this), gauge] {
    if (self) self->ShowCaption(gauge);
  };
  dial.caption = add("_dial_caption");
  panel_.dial_captions[gauge].Observer = show_caption;
  if (row.unit || row.fixed_unit) dial.unit = add("_dial_unit");
  if (row.unit) (panel_.*row.unit).Observer = show_caption;
  if (row.fixed_unit) dial.unit->Show(QString::fromUtf8(row.fixed_unit));

  dial.read_out = new TextLabel(Id(gauge) + "_read_out", ReadOutPlace(row), kReadOutStyle, this);
  dial.read_out->Follow(panel_.read_outs[gauge]);
  panel_.needles[gauge].Observer = [self = QPointer(this), gauge] {
    if (self) self->NeedleMoved(gauge);
  };
  ShowCaption(gauge);
}

// The unit keeps to the right edge and is as wide as its text; the caption ends before it.
void DialFace::ShowCaption(Gauge gauge) {
  const DialRow& row = kDials[gauge];
  Dial& dial = dials_[gauge];
  QRect place = Pixels(CaptionPlace(row));
  if (dial.unit) {
    // All the room there is, so that the text is measured whole.
    dial.unit->setGeometry(place);
    if (row.unit) dial.unit->Show(panel_.*row.unit);
    const int width = static_cast<int>(std::ceil(dial.unit->Advance()));
    dial.unit->setGeometry(place.right() + 1 - width, place.top(), width, place.height());
    place.setWidth(place.width() - width - static_cast<int>(Pixels(45)));
  }
  dial.caption->setGeometry(place);
  dial.caption->Show(panel_.dial_captions[gauge]);
  dial.read_out->Spoken(SpokenName(state_, gauge) + ", ", ' ' + Unit(gauge));
}

QLineF DialFace::NeedleLine(Gauge gauge) const {
  const Needle::Ends& line = panel_.needles[gauge].Line();
  return {OnPicture(static_cast<double>(line.x1), static_cast<double>(line.y1)),
          OnPicture(static_cast<double>(line.x2), static_cast<double>(line.y2))};
}

void DialFace::NeedleMoved(Gauge gauge) {
  update(Covered(NeedleLine(gauge)).united(dials_[gauge].painted));
}

void DialFace::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  painter.fillRect(event->rect(), look::kBoard);
  painter.setRenderHint(QPainter::Antialiasing);
  for (const Gauge gauge : kGauges) {
    if (!event->region().intersects(Pixels(kDials[gauge].plate.Inside(kFace)))) continue;
    PaintPlate(painter, gauge);
    PaintNeedle(painter, gauge);
  }
}

void DialFace::PaintPlate(QPainter& painter, Gauge gauge) const {
  const DialRow& row = kDials[gauge];
  const QRectF plate = QRectF(Pixels(row.plate.Inside(kFace))).adjusted(0.5, 0.5, -0.5, -0.5);
  painter.setPen(QPen(QColor(look::kHairline), 1));
  painter.setBrush(QColor(look::kCard));
  painter.drawRoundedRect(plate, 6, 6);

  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(look::kWindow));
  painter.drawPie(Circle(row, kFieldRadius), 0, 90 * 16);
  DrawArc(painter, row, 0, 90, look::kHairline);
  const Zone danger = DangerZone(gauge);
  if (danger.from < danger.to) {
    DrawArc(painter, row, Degrees(row, danger.from), Degrees(row, danger.to), look::kDangerZone);
  }
  constexpr int kTicks = (kMarks - 1) * kFineTicksPerMark;
  for (int i = 0; i <= kTicks; ++i) {
    const bool mark = i % kFineTicksPerMark == 0;
    const double degrees = 90.0 * i / kTicks;
    painter.setPen(QPen(QColor(mark ? look::kInk : look::kQuietInk), mark ? 1.6 : 0.8));
    painter.drawLine(AtAngle(row, kTickFrom, degrees),
                     AtAngle(row, mark ? kTickTo : kFineTickTo, degrees));
  }
}

void DialFace::PaintNeedle(QPainter& painter, Gauge gauge) {
  const QLineF line = NeedleLine(gauge);
  painter.setPen(QPen(QColor(look::Ink(look::kNeedleBlue)), 2, Qt::SolidLine, Qt::FlatCap));
  painter.drawLine(line);
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(look::kInk));
  painter.drawEllipse(Circle(kDials[gauge], kHubRadius));
  dials_[gauge].painted = Covered(line);
}

void DialFace::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) double_click_();
}

}  // namespace orvane
