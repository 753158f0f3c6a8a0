#include "ui/information_area.h"

#include <QPainter>
#include <QPointer>

#include "ui/element_name.h"
#include "ui/look.h"
#include "ui/text_label.h"
#include "ui/twips.h"

namespace orvane {
namespace {

constexpr Place kFrame1{0, 4485, 7755, 1185};
constexpr Place kHeading{150, 60, 7200, 255};
constexpr Place kRule{150, 735, 7455, 15};  // Frame3

// Elements of Label1 and Label7 as they stand: model, version, number of batteries; rated voltage,
// rated power, battery voltage.
constexpr std::size_t kPlaces[2][3] = {{1, 2, 0}, {3, 4, 5}};
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
  setObjectName("Frame1(0)");
  setGeometry(Pixels(kFrame1));
  setAttribute(Qt::WA_OpaquePaintEvent);
  heading_ = new TextLabel("Frame1(0).Caption", kHeading, kHeadingStyle, this);
  panel_.Frame1.Observer = [self = QPointer(this)] {
    if (self) self->ShowHeading();
  };
  ShowHeading();
  for (int row = 0; row < 2; ++row) {
    for (int column = 0; column < 3; ++column) {
      const std::size_t i = kPlaces[row][column];
      const int left = kColumnLeft[column];
      captions_[i] =
          new TextLabel(ElementName("Label1", i), {left, kRowTop[row], kCaptionWidth, kRowHeight},
                        kCaptionStyle, this);
      panel_.Label1[i].Observer = [self = QPointer(this), i] {
        if (self) self->ShowCaption(i);
      };
      const int value_left = left + kCaptionWidth + kGap;
      values_[i] = new TextLabel(
          ElementName("Label7", i),
          {value_left, kRowTop[row], left + kColumnWidth[column] - value_left, kRowHeight},
          kValueStyle, this);
      values_[i]->Follow(panel_.Label7[i]);
      ShowCaption(i);
    }
  }
}

void InformationArea::ShowHeading() {
  heading_->Show(OneLine(panel_.Frame1.Text()));
}

void InformationArea::ShowCaption(std::size_t i) {
  captions_[i]->Show(panel_.Label1[i]);
  values_[i]->Spoken(captions_[i]->text() + ' ');
}

void InformationArea::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), look::kCard);
  painter.fillRect(0, 0, width(), 1, look::kHairline);
  painter.fillRect(0, height() - 1, width(), 1, look::kHairline);
  painter.fillRect(Pixels(kRule), look::kHairline);
}

}  // namespace orvane
