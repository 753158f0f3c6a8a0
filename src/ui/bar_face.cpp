#include "ui/bar_face.h"

#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <cmath>

#include "link/mirror.h"
#include "ui/gauge_look.h"
#include "ui/look.h"
#include "ui/text_label.h"
#include "ui/twips.h"

namespace orvane {
namespace {

constexpr Place kBoard{15, 780, 7725, 3645};
constexpr int kTroughLeft = 1305;
constexpr int kTroughWidth = 4785;
constexpr int kTroughHeight = 300;
constexpr int kBarTop = 75;
constexpr int kBarHeight = 105;
constexpr int kMarkWidth = 405;
constexpr int kMarkHeight = 180;

// Beside a trough, relative to its top.
constexpr Place kCaption{135, 0, 1095, 300};
constexpr Place kFigure{6315, -15, 795, 330};
constexpr Place kUnit{7170, 0, 450, 300};

constexpr TextLabel::Style kCaptionStyle{.size = 13, .least = 10};
constexpr TextLabel::Style kMarkStyle{
    .size = 10, .least = 9, .alignment = Qt::AlignCenter, .ink = look::kQuietInk};
constexpr TextLabel::Style kFigureStyle{.size = 18,
                                        .least = 11,
                                        .bold = true,
                                        .alignment = Qt::AlignRight | Qt::AlignVCenter,
                                        .ground = look::kBoard};
constexpr TextLabel::Style kUnitStyle{.size = 12, .least = 10, .ink = look::kQuietInk};

}  // namespace

Trough::Trough(const Bar& bar, Gauge gauge, const Marks& marks, QWidget* parent)
    : QWidget(parent), bar_(bar), gauge_(gauge), marks_(marks) {
  setAttribute(Qt::WA_OpaquePaintEvent);
  setAttribute(Qt::WA_NoMousePropagation);
}

QRectF Trough::BarRect() const {
  const QRectF whole(0, Pixels(kBarTop), Pixels(bar_.Width()), Pixels(kBarHeight));
  return whole.intersected(QRectF(rect()));
}

void Trough::Moved() {
  const QRectF now = BarRect();
  const double from = std::min(now.right(), shown_.right());
  const double to = std::max(now.right(), shown_.right());
  const QRectF changed(from, now.top(), to - from, now.height());
  update(changed.toAlignedRect().adjusted(-1, 0, 1, 0));
}

void Trough::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), look::kTrough);
  const auto [from, to] = DangerZone(gauge_);
  if (from < to) {
    const double left = Pixels(BarWidth(gauge_, from));
    const double right = Pixels(BarWidth(gauge_, to));
    painter.fillRect(QRectF(left, 0, right - left, height()), look::kDangerTint);
  }
  // The first and the last mark stand at the trough's own edges.
  for (int k = 1; k < marks_.count - 1; ++k) {
    const double centre = Pixels(BarWidth(gauge_, marks_.Value(k)));
    painter.fillRect(QRectF(centre - 0.5, 0, 1, height()), look::kHairline);
  }
  shown_ = BarRect();
  painter.fillRect(shown_, look::Exact(look::kBarGreen));
}

struct BarFace::Row {
  Gauge gauge;
  int trough_top;
  int marks_top;
  Marks marks;
};

// From the top down.
const BarFace::Row BarFace::kRows[] = {
    {Gauge::kInput, 285, 105, {0, 55, 7}},         {Gauge::kOutput, 870, 690, {0, 55, 7}},
    {Gauge::kLoad, 1455, 1275, {0, 25, 7}},        {Gauge::kBattery, 2025, 1845, {0, 20, 6}},
    {Gauge::kTemperature, 2610, 2430, {0, 15, 6}}, {Gauge::kFrequency, 3195, 3000, {40, 5, 6}},
};

BarFace::BarFace(const State& state, Panel& panel, std::function<void()> double_click,
                 QWidget* parent)
    : QWidget(parent), state_(state), panel_(panel), double_click_(std::move(double_click)) {
  setObjectName("bar_face");
  setGeometry(Pixels(kBoard));
  setAttribute(Qt::WA_OpaquePaintEvent);
  for (const Row& row : kRows) {
    AddRow(row);
    AddMarks(row);
    ShowCaption(row.gauge);
  }
}

void BarFace::AddRow(const Row& row) {
  const Gauge gauge = row.gauge;
  const auto beside = [&](const Place& place) {
    return Place{place.left, row.trough_top + place.top, place.width, place.height};
  };
  captions_[gauge] =
      new TextLabel(Id(gauge) + "_bar_caption", beside(kCaption), kCaptionStyle, this);
  panel_.bar_captions[gauge].Observer = [self = QPointer(this), gauge] {
    if (self) self->ShowCaption(gauge);
  };

  Bar& bar = panel_.bars[gauge];
  auto* trough = new Trough(bar, gauge, row.marks, this);
  troughs_[gauge] = trough;
  trough->setObjectName(Id(gauge) + "_bar");
  trough->setGeometry(Pixels(Place{kTroughLeft, row.trough_top, kTroughWidth, kTroughHeight}));
  bar.Observer = [trough = QPointer(trough)] {
    if (trough) trough->Moved();
  };

  figures_[gauge] = new TextLabel(Id(gauge) + "_bar_figure", beside(kFigure), kFigureStyle, this);
  figures_[gauge]->Follow(panel_.bar_figures[gauge]);
  (new TextLabel(Id(gauge) + "_bar_unit", beside(kUnit), kUnitStyle, this))->Show(Unit(gauge));
}

// Each mark stands centred over the end that the bar has at its value.
void BarFace::AddMarks(const Row& row) {
  for (int k = 0; k < row.marks.count; ++k) {
    const int value = row.marks.Value(k);
    const double centre = kTroughLeft + BarWidth(row.gauge, value);
    const int left = static_cast<int>(std::lround(centre)) - kMarkWidth / 2;
    const QString text = QString::number(value);
    auto* mark = new TextLabel(Id(row.gauge) + "_bar_mark_" + text,
                               {left, row.marks_top, kMarkWidth, kMarkHeight}, kMarkStyle, this);
    mark->Show(text);
  }
}

void BarFace::ShowCaption(Gauge gauge) {
  captions_[gauge]->Show(panel_.bar_captions[gauge]);
  figures_[gauge]->Spoken(SpokenName(state_, gauge) + ", ", ' ' + Unit(gauge));
  troughs_[gauge]->setAccessibleName(SpokenName(state_, gauge));
}

void BarFace::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), look::kHairline);
  painter.fillRect(rect().adjusted(1, 1, -1, -1), look::kBoard);
  for (const Row& row : kRows) {
    const QRect trough = Pixels(Place{kTroughLeft, row.trough_top, kTroughWidth, kTroughHeight});
    painter.fillRect(trough.adjusted(-1, -1, 1, 1), look::kEdge);
  }
}

void BarFace::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) double_click_();
}

}  // namespace orvane
