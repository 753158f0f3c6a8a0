#include "ui/about_window.h"

#include <QIcon>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QShortcut>
#include <string>

#include "ui/form_parts.h"
#include "ui/imprint.h"
#include "ui/look.h"
#include "ui/picture.h"
#include "ui/text_label.h"
#include "ui/twips.h"
#include "ui/windows.h"
#include "ui/words.h"

namespace orvane {
namespace {

constexpr Place kForm{0, 0, 6300, 4425};
constexpr Place kLogo{300, 330, 1200, 1200};
constexpr Place kRule{300, 1800, 5700, 15};
constexpr Place kRuns{300, 3210, 5700, 480};
constexpr Place kOk{5040, 3735, 960, 465};

constexpr Words kTitle{"关于Orvane", "About Orvane"};
constexpr Words kButton{"确定", "OK"};
constexpr char kPlatform[] = "For Windows 9X/NT Ver 3.0";

struct Line {
  const char* name;
  Words words;
  Place place;
  TextLabel::Style style;
};

constexpr int kTextLeft = 1800;
constexpr int kTextWidth = 4200;

constexpr Line kLines[] = {
    {"name", {"Orvane", "Orvane"}, {kTextLeft, 300, kTextWidth, 525}, {.size = 30, .bold = true}},
    {"platform", {kPlatform, kPlatform}, {kTextLeft, 870, kTextWidth, 285}, {.size = 14}},
    {"copyright",
     kCopyright,
     {kTextLeft, 1230, kTextWidth, 270},
     {.size = 12, .ink = look::kQuietInk}},
    {"notice",
     kNotice,
     {300, 1950, 5700, 1275},
     {.size = 12, .alignment = Qt::AlignLeft | Qt::AlignTop, .ink = look::kQuietInk, .wrap = true}},
};

constexpr char kBoxTitle[] = "Orvane";
constexpr char kContactLine[] = "Contact: 555-0100";

}  // namespace

AboutWindow::AboutWindow(const State& state, const QString& runs, Forms& forms, Dialogs& dialogs)
    : FormDialog(kFormFlags), state_(state), dialogs_(dialogs) {
  setObjectName("about");
  setFixedSize(Pixels(kForm).size());
  CenterForm(*this);
  setWindowTitle(Pick(state, kTitle));
  auto* picture = new Picture("logo", ":/orvane.svg", kLogo, this);
  picture->setAccessibleName("Orvane");
  for (const Line& line : kLines) {
    (new TextLabel(line.name, line.place, line.style, this))->Show(Pick(state, line.words));
  }
  auto* line = new QLabel(runs, this);
  line->setObjectName("runs");
  line->setTextFormat(Qt::PlainText);
  line->setGeometry(Pixels(kRuns));
  line->setWordWrap(true);
  line->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  QPushButton* button = NewButton("ok", kOk, this);
  button->setAccessibleName(Pick(state, kButton));
  button->setIcon(QIcon(":/ok.svg"));
  button->setIconSize({20, 20});
  button->setAttribute(Qt::WA_NoMousePropagation);
  button->setFocus();
  connect(button, &QPushButton::clicked, this, [&forms] { forms.Unload(Form::kAbout); });
}

void AboutWindow::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), look::kCard);
  painter.fillRect(Pixels(kRule), look::kHairline);
}

void AboutWindow::mousePressEvent(QMouseEvent* event) {
  constexpr Qt::KeyboardModifiers kAllThree =
      Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier;
  if (event->button() != Qt::RightButton || event->modifiers() != kAllThree) return;
  dialogs_.Plain(std::string(state_.Text(Message::kCopyright)) + "\r\r" + kContactLine, kBoxTitle);
}

}  // namespace orvane
