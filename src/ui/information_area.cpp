#include "ui/information_area.h"

#include <QFontMetrics>
#include <QPainter>
#include <QPointer>
#include <algorithm>

#include "ui/look.h"
#include "ui/text_label.h"
#include "ui/twips.h"

namespace orvane {
namespace {

constexpr Place kArea{0, 4485, 7755, 1185};
constexpr Place kHeading{150, 60, 7200, 255};
constexpr Place kRule{150, 735, 7455, 15};

struct DatumPlace {
  UpsDatum datum;
  const char* id;  // in the names of widgets
};

// As they stand.
constexpr DatumPlace kPlaces[2][3] = {{{UpsDatum::kModel, "model"},
                                       {UpsDatum::kVersion, "version"},
                                       {UpsDatum::kBatteryCount, "battery_count"}},
                                      {{UpsDatum::kRatedVoltage, "rated_voltage"},
                                       {UpsDatum::kRatedPower, "rated_power"},
                                       {UpsDatum::kBatteryVoltage, "battery_voltage"}}};
constexpr int kRowTop[] = {360, 795};
constexpr int kRowHeight = 315;
constexpr int kColumnLeft[] = {150, 2745, 5130};
constexpr int kColumnWidth[] = {2520, 2310, 2475};
constexpr int kCaptionWidth = 1155;
constexpr int kGap = 60;

constexpr TextLabel::Style kHeadingStyle{.size = 12, .least = 10, .ink = look::kQuietInk};
constexpr TextLabel::Style kCaptionStyle{.size = 12, .least = 10, .ink = look::kQuietInk};
constexpr TextLabel::Style kValueStyle{.size = 12, .least = 11, .ground = look::kCard};

}  // namespace

InformationArea::InformationArea(Panel& panel, QWidget* parent) : QWidget(parent), panel_(panel) {
  setObjectName("information");
  setGeometry(Pixels(kArea));
  setAttribute(Qt::WA_OpaquePaintEvent);
  heading_ = new TextLabel("information_heading", kHeading, kHeadingStyle, this);
  panel_.information_heading.Observer = [self = QPointer(this)] {
    if (self) self->ShowHeading();
  };
  ShowHeading();
  for (int row = 0; row < 2; ++row) {
    for (int column = 0; column < 3; ++column) {
      const auto& [datum, id] = kPlaces[row][column];
      const int left = kColumnLeft[column];
      captions_[datum] =
          new TextLabel(QString(id) + "_caption", {left, kRowTop[row], kCaptionWidth, kRowHeight},
                        kCaptionStyle, this);
      panel_.information_captions[datum].Observer = [self = QPointer(this), datum = datum] {
        if (self) self->ShowCaption(datum);
      };
      const int value_left = left + kCaptionWidth + kGap;
      values_[datum] = new TextLabel(
          id, {value_left, kRowTop[row], left + kColumnWidth[column] - value_left, kRowHeight},
          kValueStyle, this);
      panel_.information[datum].Observer = [self = QPointer(this), datum = datum] {
        if (self) self->ShowValue(datum);
      };
      ShowCaption(datum);
    }
  }
  for (const UpsDatum datum : kUpsData) ShowValue(datum);
}

void InformationArea::ShowValue(UpsDatum datum) {
  values_[datum]->Show(panel_.information[datum]);
  ShareWidth();
}

// A column whose values are longer than its room takes of that which the others do not need.
void InformationArea::ShareWidth() {
  constexpr int kColumns = 3;
  int room[kColumns], need[kColumns];
  int missing = 0, spare = 0;
  const QFontMetrics metrics(look::Face(kValueStyle.size));
  for (int column = 0; column < kColumns; ++column) {
    room[column] = qRound(Pixels(kColumnWidth[column] - kCaptionWidth - kGap));
    need[column] = 0;
    for (const auto& row : kPlaces) {
      const int width = metrics.horizontalAdvance(values_[row[column].datum]->text()) + 1;
      need[column] = std::max(need[column], width);
    }
    missing += std::max(0, need[column] - room[column]);
    spare += std::max(0, room[column] - need[column]);
  }
  const int given = std::min(missing, spare);
  int moved = 0;
  for (int column = 0; column < kColumns; ++column) {
    const int lack = need[column] - room[column];
    const int change = lack > 0 ? given * lack / missing : spare > 0 ? given * lack / spare : 0;
    for (int row = 0; row < 2; ++row) {
      const UpsDatum datum = kPlaces[row][column].datum;
      const Place caption{kColumnLeft[column], kRowTop[row], kCaptionWidth, kRowHeight};
      const Place value{caption.Right() + kGap, kRowTop[row],
                        kColumnWidth[column] - kCaptionWidth - kGap, kRowHeight};
      captions_[datum]->setGeometry(Pixels(caption).translated(moved, 0));
      values_[datum]->setGeometry(Pixels(value).translated(moved, 0).adjusted(0, 0, change, 0));
    }
    moved += change;
  }
}

void InformationArea::ShowHeading() {
  heading_->Show(OneLine(panel_.information_heading.Text()));
}

void InformationArea::ShowCaption(UpsDatum datum) {
  captions_[datum]->Show(panel_.information_captions[datum]);
  values_[datum]->Spoken(captions_[datum]->text() + ' ');
}

void InformationArea::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), look::kCard);
  painter.fillRect(0, 0, width(), 1, look::kHairline);
  painter.fillRect(0, height() - 1, width(), 1, look::kHairline);
  painter.fillRect(Pixels(kRule), look::kHairline);
}

}  // namespace orvane
