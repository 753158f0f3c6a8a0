#include "ui/state_strip.h"

#include <QPainter>
#include <QPointer>

#include "ui/look.h"
#include "ui/text_label.h"
#include "ui/twips.h"

namespace orvane {
namespace {

constexpr Place kStrip{0, 60, 7755, 660};

struct StateRow {
  const char* caption_name;
  const char* state_name;
  Label Panel::*caption;
  Label Panel::*state;
};

constexpr StateRow kRows[] = {
    {"mains_caption", "mains", &Panel::mains_caption, &Panel::mains},
    {"battery_caption", "battery", &Panel::battery_caption, &Panel::battery},
    {"bypass_caption", "bypass", &Panel::bypass_caption, &Panel::bypass},
    {"ups_caption", "ups", &Panel::ups_caption, &Panel::ups},
    {"link_caption", "link", &Panel::link_caption, &Panel::link},
};

// Captions in one row, the states in a row beneath; a divider stands between two columns.
constexpr int kColumn = kStrip.width / static_cast<int>(std::size(kRows));
constexpr int kInset = 150;
constexpr Place kCaption{kInset, 60, kColumn - kInset - 45, 210};
constexpr Place kState{kInset, 270, kColumn - kInset - 45, 315};
constexpr Place kDivider{0, 120, 15, 420};
constexpr Place kFaultBar{0, 600, kColumn, 60};

constexpr Place InColumn(std::size_t i, const Place& place) {
  return {static_cast<int>(i) * kColumn + place.left, place.top, place.width, place.height};
}

constexpr TextLabel::Style kCaptionStyle{.size = 11, .least = 9, .ink = look::kQuietInk};
constexpr TextLabel::Style kStateStyle{
    .size = 16, .least = 11, .bold = true, .ground = look::kCard};

}  // namespace

StateStrip::StateStrip(Panel& panel, QWidget* parent) : QWidget(parent), panel_(panel) {
  setObjectName("states");
  setGeometry(Pixels(kStrip));
  setAttribute(Qt::WA_OpaquePaintEvent);
  for (std::size_t i = 0; i < lines_.size(); ++i) {
    const StateRow& row = kRows[i];
    Line& line = lines_[i];
    line.caption = new TextLabel(row.caption_name, InColumn(i, kCaption), kCaptionStyle, this);
    line.state = new TextLabel(row.state_name, InColumn(i, kState), kStateStyle, this);
    for (Label* label : {&(panel.*row.caption), &(panel.*row.state)}) {
      label->Observer = [self = QPointer(this), i] {
        if (self) self->Refresh(i);
      };
    }
    Refresh(i);
  }
}

void StateStrip::Refresh(std::size_t i) {
  const Label& caption = panel_.*kRows[i].caption;
  const Label& state = panel_.*kRows[i].state;
  Line& line = lines_[i];
  line.caption->Show(caption);
  line.state->Show(state);
  line.state->Spoken(line.caption->text() + ' ');

  const bool fault = state.ForeColor() == kRed && !state.Caption().empty();
  if (fault == line.fault) return;
  line.fault = fault;
  line.state->Ground(fault ? look::kFaultGround : look::kCard);
  update(Pixels(InColumn(i, {0, 0, kColumn, kStrip.height})));
}

void StateStrip::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), look::kCard);
  painter.fillRect(0, 0, width(), 1, look::kHairline);
  painter.fillRect(0, height() - 1, width(), 1, look::kHairline);
  for (std::size_t i = 0; i < lines_.size(); ++i) {
    if (lines_[i].fault) {
      painter.fillRect(Pixels(InColumn(i, {0, 0, kColumn, kStrip.height})), look::kFaultGround);
      painter.fillRect(Pixels(InColumn(i, kFaultBar)), look::Exact(kRed));
    }
    if (i > 0) painter.fillRect(Pixels(InColumn(i, kDivider)), look::kHairline);
  }
}

}  // namespace orvane
