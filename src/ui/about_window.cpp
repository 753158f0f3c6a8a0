#include "ui/about_window.h"

#include <QIcon>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <string>

#include "ui/look.h"
#include "ui/picture.h"
#include "ui/text_label.h"
#include "ui/twips.h"
#include "ui/windows.h"
#include "ui/words.h"

namespace orvane {
namespace {

constexpr Place kForm{0, 0, 6300, 4050};
constexpr Place kImage1{300, 330, 1200, 1200};
constexpr Place kFrame1{300, 1800, 5700, 15};
constexpr Place kCommand1{5040, 3360, 960, 465};

constexpr Words kTitle{"关于Orvane", "About Orvane"};
constexpr Words kButton{"确定", "OK"};

struct Line {
  const char* name;
  Words words;
  Place place;
  TextLabel::Style style;
};

constexpr int kTextLeft = 1800;
constexpr int kTextWidth = 4200;

constexpr Line kLines[] = {
    {"Label1", {"Orvane", "Orvane"}, {kTextLeft, 300, kTextWidth, 525}, {.size = 30, .bold = true}},
    {"Label2",
     {"For Windows 9X/NT Ver 3.0", "For Windows 9X/NT Ver 3.0"},
     {kTextLeft, 870, kTextWidth, 285},
     {.size = 14}},
    {"Label3",
     {"版权所有 (C) 2026 Orvane 开发者", "Copyright (C) 2026 the Orvane developers"},
     {kTextLeft, 1230, kTextWidth, 270},
     {.size = 12, .ink = look::kQuietInk}},
    {"Label4",
     {"请注意：本程式能够关闭您的应用程式，并切断计算机及为其供电的UPS。本程式按现状提供，不附带任"
      "何"
      "担保，它在您的计算机上所做的一切由您自行负责。正式使用之前，请先试验各项设定。",
      "Please note: this program can close your applications and switch off your computer and the "
      "UPS that feeds it. It is supplied as it is, without warranty of any kind, and nobody but "
      "you "
      "answers for what it does on your machine. Try your settings out before you rely on them."},
     {300, 1950, 5700, 1275},
     {.size = 12, .alignment = Qt::AlignLeft | Qt::AlignTop, .ink = look::kQuietInk, .wrap = true}},
};

constexpr char kBoxTitle[] = "Orvane";
constexpr char kContactLine[] = "Contact: 555-0100";

}  // namespace

AboutWindow::AboutWindow(const State& state, Forms& forms, Dialogs& dialogs)
    : QWidget(nullptr, Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                           Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint),
      state_(state),
      dialogs_(dialogs) {
  setObjectName("frmAbout");
  setFixedSize(Pixels(kForm).size());
  CenterForm(*this);
  setWindowTitle(Pick(state, kTitle));
  auto* picture = new Picture("Image1", ":/orvane.svg", kImage1, this);
  picture->setAccessibleName("Orvane");
  for (const Line& line : kLines) {
    (new TextLabel(line.name, line.place, line.style, this))->Show(Pick(state, line.words));
  }
  auto* button = new QPushButton(QIcon(":/ok.svg"), QString(), this);
  button->setObjectName("Command1");
  button->setAccessibleName(Pick(state, kButton));
  button->setGeometry(Pixels(kCommand1));
  button->setIconSize({20, 20});
  button->setAttribute(Qt::WA_NoMousePropagation);
  connect(button, &QPushButton::clicked, this, [&forms] { forms.Unload(Form::frmAbout); });
}

void AboutWindow::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), look::kCard);
  painter.fillRect(Pixels(kFrame1), look::kHairline);
}

void AboutWindow::mousePressEvent(QMouseEvent* event) {
  constexpr Qt::KeyboardModifiers kAllThree =
      Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier;
  if (event->button() != Qt::RightButton || event->modifiers() != kAllThree) return;
  dialogs_.Plain(std::string(state_.Message(41)) + "\r\r" + kContactLine, kBoxTitle);
}

}  // namespace orvane
