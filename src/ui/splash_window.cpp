#include "ui/splash_window.h"

#include <QMouseEvent>
#include <QPainter>

#include "ui/imprint.h"
#include "ui/look.h"
#include "ui/picture.h"
#include "ui/text_label.h"
#include "ui/twips.h"
#include "ui/windows.h"

namespace orvane {
namespace {

constexpr Place kForm{0, 0, 7200, 4200};
constexpr Place kLogo{450, 480, 1650, 1650};

constexpr int kTextLeft = 2550;
constexpr int kTextWidth = 4200;

struct Line {
  const char* name;
  const char* text;
  Place place;
  TextLabel::Style style;
};

constexpr Line kLines[] = {
    {"name", "ORVANE", {kTextLeft, 450, kTextWidth, 735}, {.size = 42, .bold = true}},
    {"platform",
     "FOR WINDOWS 9X/NT",
     {kTextLeft, 1230, kTextWidth, 300},
     {.size = 15, .ink = look::kQuietInk}},
    {"version", "Ver 3.0", {kTextLeft, 1575, kTextWidth, 300}, {.size = 15}},
    {"copyright",
     kCopyright.english,
     {kTextLeft, 2025, kTextWidth, 240},
     {.size = 12, .ink = look::kQuietInk}},
    {"licence",
     "Free software under the MIT licence",
     {kTextLeft, 2280, kTextWidth, 240},
     {.size = 12, .ink = look::kQuietInk}},
};

constexpr Place kRule{450, 2745, 6300, 15};
constexpr Place kDisclaimer{450, 2865, 6300, 1035};

}  // namespace

SplashWindow::SplashWindow(Forms& forms)
    : QWidget(nullptr, Qt::Window | Qt::FramelessWindowHint), forms_(forms) {
  setObjectName("splash");
  setWindowTitle("Orvane");
  setFixedSize(Pixels(kForm).size());
  CenterForm(*this);
  auto* logo = new Picture("logo", ":/orvane.svg", kLogo, this);
  logo->setAccessibleName("Orvane");
  for (const Line& line : kLines) {
    (new TextLabel(line.name, line.place, line.style, this))->Show(QString(line.text));
  }
  constexpr TextLabel::Style kDisclaimerStyle{
      .size = 12, .alignment = Qt::AlignLeft | Qt::AlignTop, .ink = look::kQuietInk, .wrap = true};
  auto* disclaimer = new TextLabel("notice", kDisclaimer, kDisclaimerStyle, this);
  disclaimer->Show(QString(kNotice.english));
}

void SplashWindow::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), look::kEdge);
  painter.fillRect(rect().adjusted(1, 1, -1, -1), look::kCard);
  painter.fillRect(QRect(1, 1, width() - 2, 5), look::kAccent);
  painter.fillRect(Pixels(kRule), look::kHairline);
}

void SplashWindow::keyPressEvent(QKeyEvent*) {
  forms_.Unload(Form::kSplash);
}

void SplashWindow::mousePressEvent(QMouseEvent* event) {
  pressed_ = event->button() == Qt::LeftButton;
}

void SplashWindow::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || !pressed_) return;
  pressed_ = false;
  if (rect().contains(event->position().toPoint())) forms_.Unload(Form::kSplash);
}

}  // namespace orvane
