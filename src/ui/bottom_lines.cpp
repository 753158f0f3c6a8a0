#include "ui/bottom_lines.h"

#include <QPainter>
#include <QPointer>

#include "ui/look.h"
#include "ui/text_label.h"
#include "ui/twips.h"

namespace orvane {
namespace {

constexpr Place kWarningPlace{0, 5760, 7740, 330};
constexpr Place kWhole{150, 0, 7440, 330};
constexpr Place kUpperHalf{150, 0, 7440, 165};
constexpr Place kLowerHalf{150, 165, 7440, 165};

constexpr TextLabel::Style kWarningStyle{
    .size = 12, .least = 9, .bold = true, .ink = look::Ink(kRed)};

constexpr Place kStatusPlace{0, 6135, 7740, 345};

struct StatusRow {
  const char* name;
  Label Panel::*label;
  Place place;
  Qt::Alignment alignment;
};

constexpr StatusRow kStatusRows[] = {
    {"status_line", &Panel::status_line, {150, 30, 3630, 285}, Qt::AlignLeft | Qt::AlignVCenter},
    {"port_line", &Panel::port_line, {3930, 30, 1800, 285}, Qt::AlignCenter},
    {"clock", &Panel::clock, {5880, 30, 1710, 285}, Qt::AlignRight | Qt::AlignVCenter},
};
constexpr int kDividers[] = {3855, 5805};

}  // namespace

WarningLine::WarningLine(Panel& panel, QWidget* parent) : QWidget(parent), panel_(panel) {
  setObjectName("warnings");
  setGeometry(Pixels(kWarningPlace));
  setAttribute(Qt::WA_OpaquePaintEvent);
  supply_ = new TextLabel("supply_warning", kWhole, kWarningStyle, this);
  overload_ = new TextLabel("overload_warning", kWhole, kWarningStyle, this);
  for (Label* warning : {&panel_.supply_warning, &panel_.overload_warning}) {
    warning->Observer = [self = QPointer(this)] {
      if (self) self->Refresh();
    };
  }
  Refresh();
}

void WarningLine::Refresh() {
  const bool both = panel_.supply_warning.Visible() && panel_.overload_warning.Visible();
  supply_->setGeometry(Pixels(both ? kUpperHalf : kWhole));
  overload_->setGeometry(Pixels(both ? kLowerHalf : kWhole));
  // At half the height, the strokes of bold Chinese characters run together.
  for (TextLabel* warning : {supply_, overload_}) warning->Bold(!both);
  supply_->Show(panel_.supply_warning);
  overload_->Show(panel_.overload_warning);
  const bool lit = panel_.supply_warning.Visible() || panel_.overload_warning.Visible();
  if (lit == lit_) return;
  lit_ = lit;
  update();
}

void WarningLine::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), lit_ ? look::kFaultGround : look::kWindow);
  if (lit_) painter.fillRect(0, 0, 4, height(), look::Exact(kRed));
}

StatusLine::StatusLine(Panel& panel, QWidget* parent) : QWidget(parent) {
  setObjectName("status");
  setGeometry(Pixels(kStatusPlace));
  setAttribute(Qt::WA_OpaquePaintEvent);
  for (const StatusRow& row : kStatusRows) {
    const TextLabel::Style style{
        .size = 12, .least = 10, .alignment = row.alignment, .ground = look::kWindow};
    (new TextLabel(row.name, row.place, style, this))->Follow(panel.*row.label);
  }
}

void StatusLine::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), look::kWindow);
  painter.fillRect(0, 0, width(), 1, look::kHairline);
  for (const int divider : kDividers) {
    painter.fillRect(Pixels(Place{divider, 75, 15, 195}), look::kHairline);
  }
}

}  // namespace orvane
