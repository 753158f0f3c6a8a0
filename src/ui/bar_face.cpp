#include "ui/bar_face.h"

#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <cmath>
#include <span>

#include "link/mirror.h"
#include "ui/gauge_look.h"
#include "ui/look.h"
#include "ui/text_label.h"
#include "ui/twips.h"
#include "ui/words.h"

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
  const char* unit;
  int trough_top;
  int marks_top;
  int first_mark;  // index of its lblMark
  std::array<int, 7> marks;
  std::size_t mark_count;
};

constexpr Row kRows[kGauges] = {
    {kInput,
     &Panel::lblApcAc,
     "lblApcAc",
     &Panel::shpInput,
     "V",
     285,
     105,
     0,
     {0, 55, 110, 165, 220, 275, 330},
     7},
    {kOutput,
     &Panel::lblApcOutput,
     "lblApcOutput",
     &Panel::shpOutput,
     "V",
     870,
     690,
     7,
     {0, 55, 110, 165, 220, 275, 330},
     7},
    {kLoad,
     &Panel::lblApcLoad,
     "lblApcLoad",
     &Panel::shpLoad,
     "%",
     1455,
     1275,
     14,
     {0, 25, 50, 75, 100, 125, 150},
     7},
    {kBattery,
     &Panel::lblApcBatt,
     "lblApcBatt",
     &Panel::shpBatt,
     "%",
     2025,
     1845,
     21,
     {0, 20, 40, 60, 80, 100},
     6},
    {kTemperature,
     &Panel::lblApcTemp,
     "lblApcTemp",
     &Panel::shpTemp,
     "℃",
     2610,
     2430,
     27,
     {0, 15, 30, 45, 60, 75},
     6},
    {kFrequency,
     &Panel::lblApcFreq,
     "lblApcFreq",
     &Panel::shpFreq,
     "Hz",
     3195,
     3000,
     33,
     {40, 45, 50, 55, 60, 65},
     6},
};

std::span<const int> Marks(const Row& row) {
  return {row.marks.data(), row.mark_count};
}

constexpr TextLabel::Style kCaptionStyle{.size = 13, .least = 10};
constexpr TextLabel::Style kMarkStyle{
    .size = 10, .least = 9, .alignment = Qt::AlignCenter, .ink = look::kQuietInk};
constexpr TextLabel::Style kFigureStyle{.size = 18,
                                        .least = 11,
                                        .bold = true,
                                        .alignment = Qt::AlignRight | Qt::AlignVCenter,
                                        .ground = look::kBoard};
constexpr TextLabel::Style kUnitStyle{.size = 12, .least = 10, .ink = look::kQuietInk};

QString Element(const char* name, std::size_t index) {
  return QString("%1(%2)").arg(name).arg(index);
}

}  // namespace

Trough::Trough(const Bar& bar, std::size_t index, std::span<const int> marks, QWidget* parent)
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
  for (const int mark : marks_.subspan(1, marks_.size() - 2)) {
    painter.fillRect(QRectF(Pixels(BarWidth(index_, mark)) - 0.5, 0, 1, height()), look::kHairline);
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
  captions_[i] = new TextLabel(Element("lblApcCap", i), beside(kCaption), kCaptionStyle, this);
  panel_.lblApcCap[i].Observer = [self = QPointer(this), i] {
    if (self) self->ShowCaption(i);
  };

  Bar& bar = panel_.*row.bar;
  auto* trough = new Trough(bar, row.index, Marks(row), this);
  trough->setObjectName(Element("Picture3", i));
  trough->setGeometry(Pixels(Place{kTroughLeft, row.trough_top, kTroughWidth, kTroughHeight}));
  bar.Observer = [trough = QPointer(trough)] {
    if (trough) trough->Moved();
  };

  figures_[i] = new TextLabel(row.figure_name, beside(kFigure), kFigureStyle, this);
  figures_[i]->Follow(panel_.*row.figure);
  auto* unit = new TextLabel(Element("Label18", i), beside(kUnit), kUnitStyle, this);
  unit->Show(QString::fromUtf8(row.unit));
}

// Each mark stands centred over the end that the bar has at its value.
void BarFace::AddMarks(std::size_t i) {
  const Row& row = kRows[i];
  for (std::size_t k = 0; k < row.mark_count; ++k) {
    const double centre = kTroughLeft + BarWidth(row.index, row.marks[k]);
    const int left = static_cast<int>(std::lround(centre)) - kMarkWidth / 2;
    auto* mark = new TextLabel(Element("lblMark", static_cast<std::size_t>(row.first_mark) + k),
                               {left, row.marks_top, kMarkWidth, kMarkHeight}, kMarkStyle, this);
    mark->Show(QString::number(row.marks[k]));
  }
}

void BarFace::ShowCaption(std::size_t i) {
  captions_[i]->Show(panel_.lblApcCap[i]);
  figures_[i]->Spoken(SpokenName(state_, kRows[i].index) + ", ",
                      ' ' + QString::fromUtf8(kRows[i].unit));
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
