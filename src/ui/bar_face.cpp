#include "ui/bar_face.h"

#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <cmath>

#include "link/mirror.h"
#include "ui/element_name.h"
#include "ui/gauge_look.h"
#include "ui/look.h"
#include "ui/text_label.h"
#include "ui/twips.h"

namespace orvane {
namespace {

constexpr Place kPicApc{15, 780, 7725, 3645};
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

struct Row {
  std::size_t index;  // of Label2
  Label Panel::*figure;
  const char* figure_name;
  Bar Panel::*bar;
  int trough_top;
  int marks_top;
  int first_mark_element;  // of lblMark
  Marks marks;
};

// From the top down.
constexpr Row kRows[kGauges] = {
    {kInput, &Panel::lblApcAc, "lblApcAc", &Panel::shpInput, 285, 105, 0, {0, 55, 7}},
    {kOutput, &Panel::lblApcOutput, "lblApcOutput", &Panel::shpOutput, 870, 690, 7, {0, 55, 7}},
    {kLoad, &Panel::lblApcLoad, "lblApcLoad", &Panel::shpLoad, 1455, 1275, 14, {0, 25, 7}},
    {kBattery, &Panel::lblApcBatt, "lblApcBatt", &Panel::shpBatt, 2025, 1845, 21, {0, 20, 6}},
    {kTemperature, &Panel::lblApcTemp, "lblApcTemp", &Panel::shpTemp, 2610, 2430, 27, {0, 15, 6}},
    {kFrequency, &Panel::lblApcFreq, "lblApcFreq", &Panel::shpFreq, 3195, 3000, 33, {40, 5, 6}},
};

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

Trough::Trough(const Bar& bar, std::size_t index, const Marks& marks, QWidget* parent)
    : QWidget(parent), bar_(bar), index_(index), marks_(marks) {
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
  const auto [from, to] = DangerZone(index_);
  if (from < to) {
    const double left = Pixels(BarWidth(index_, from));
    const double right = Pixels(BarWidth(index_, to));
    painter.fillRect(QRectF(left, 0, right - left, height()), look::kDangerTint);
  }
  // The first and the last mark stand at the trough's own edges.
  for (int k = 1; k < marks_.count - 1; ++k) {
    const double centre = Pixels(BarWidth(index_, marks_.Value(k)));
    painter.fillRect(QRectF(centre - 0.5, 0, 1, height()), look::kHairline);
  }
  shown_ = BarRect();
  painter.fillRect(shown_, look::Exact(look::kBarGreen));
}

BarFace::BarFace(const State& state, Panel& panel, std::function<void()> double_click,
                 QWidget* parent)
    : QWidget(parent), state_(state), panel_(panel), double_click_(std::move(double_click)) {
  setObjectName("picAPC");
  setGeometry(Pixels(kPicApc));
  setAttribute(Qt::WA_OpaquePaintEvent);
  for (std::size_t i = 0; i < kGauges; ++i) {
    AddRow(i);
    AddMarks(i);
    ShowCaption(i);
  }
}

void BarFace::AddRow(std::size_t i) {
  const Row& row = kRows[i];
  const auto beside = [&](const Place& place) {
    return Place{place.left, row.trough_top + place.top, place.width, place.height};
  };
  captions_[i] = new TextLabel(ElementName("lblApcCap", i), beside(kCaption), kCaptionStyle, this);
  panel_.lblApcCap[i].Observer = [self = QPointer(this), i] {
    if (self) self->ShowCaption(i);
  };

  Bar& bar = panel_.*row.bar;
  auto* trough = new Trough(bar, row.index, row.marks, this);
  trough->setObjectName(ElementName("Picture3", i));
  trough->setGeometry(Pixels(Place{kTroughLeft, row.trough_top, kTroughWidth, kTroughHeight}));
  bar.Observer = [trough = QPointer(trough)] {
    if (trough) trough->Moved();
  };

  figures_[i] = new TextLabel(row.figure_name, beside(kFigure), kFigureStyle, this);
  figures_[i]->Follow(panel_.*row.figure);
  auto* unit = new TextLabel(ElementName("Label18", i), beside(kUnit), kUnitStyle, this);
  unit->Show(Unit(row.index));
}

// Each mark stands centred over the end that the bar has at its value.
void BarFace::AddMarks(std::size_t i) {
  const Row& row = kRows[i];
  for (int k = 0; k < row.marks.count; ++k) {
    const int value = row.marks.Value(k);
    const double centre = kTroughLeft + BarWidth(row.index, value);
    const int left = static_cast<int>(std::lround(centre)) - kMarkWidth / 2;
    auto* mark = new TextLabel(ElementName("lblMark", row.first_mark_element + k),
                               {left, row.marks_top, kMarkWidth, kMarkHeight}, kMarkStyle, this);
    mark->Show(QString::number(value));
  }
}

void BarFace::ShowCaption(std::size_t i) {
  captions_[i]->Show(panel_.lblApcCap[i]);
  const std::size_t index = kRows[i].index;
  figures_[i]->Spoken(SpokenName(state_, index) + ", ", ' ' + Unit(index));
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
