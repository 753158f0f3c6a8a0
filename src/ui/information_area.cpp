#include "ui/information_area.h"

#include <QPainter>
#include <QPointer>

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
      values_[datum]->Follow(panel_.information[datum]);
      ShowCaption(datum);
    }
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
