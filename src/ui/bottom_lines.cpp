#include "ui/bottom_lines.h"

#include <QPainter>
#include <QPointer>

#include "ui/look.h"
#include "ui/text_label.h"
#include "ui/twips.h"

namespace orvane {
namespace {

constexpr Place kPicture1{0, 5760, 7740, 330};
constexpr Place kWhole{150, 0, 7440, 330};
constexpr Place kUpperHalf{150, 0, 7440, 165};
constexpr Place kLowerHalf{150, 165, 7440, 165};

constexpr TextLabel::Style kWarningStyle{
    .size = 12, .least = 9, .bold = true, .ink = look::Exact(kRed)};

constexpr Place kPicture2{0, 6135, 7740, 345};

struct StatusRow {
  const char* name;
  Label Panel::*label;
  Place place;
  Qt::Alignment alignment;
};

constexpr StatusRow kStatusRows[] = {
    {"Label13", &Panel::Label13, {150, 30, 3630, 285}, Qt::AlignLeft | Qt::AlignVCenter},
    {"Label14", &Panel::Label14, {3930, 30, 1800, 285}, Qt::AlignCenter},
    {"Label15", &Panel::Label15, {5880, 30, 1710, 285}, Qt::AlignRight | Qt::AlignVCenter},
};
constexpr int kDividers[] = {3855, 5805};

}  // namespace

WarningLine::WarningLine(Panel& panel, QWidget* parent) : QWidget(parent), panel_(panel) {
  setObjectName("Picture1");
  setGeometry(Pixels(kPicture1));
  setAttribute(Qt::WA_OpaquePaintEvent);
  warning_ = new TextLabel("lblAlert(1)", kWhole, kWarningStyle, this);
  overload_ = new TextLabel("lblAlert(2)", kWhole, kWarningStyle, this);
  for (Label* warning : {&panel_.lblAlert[1], &panel_.lblAlert[2]}) {
    warning->Observer = [self = QPointer(this)] {
      if (self) self->Refresh();
    };
  }
  Refresh();
}

void WarningLine::Refresh() {
  const bool both = panel_.lblAlert[1].Visible() && panel_.lblAlert[2].Visible();
  warning_->setGeometry(Pixels(both ? kUpperHalf : kWhole));
  overload_->setGeometry(Pixels(both ? kLowerHalf : kWhole));
  warning_->Show(panel_.lblAlert[1]);
  overload_->Show(panel_.lblAlert[2]);
  const bool lit = panel_.lblAlert[1].Visible() || panel_.lblAlert[2].Visible();
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
  setObjectName("Picture2");
  setGeometry(Pixels(kPicture2));
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
