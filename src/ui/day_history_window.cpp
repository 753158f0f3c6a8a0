#include "ui/day_history_window.h"

#include <QPushButton>
#include <QShortcut>

#include "ui/day_grid.h"
#include "ui/form_parts.h"
#include "ui/look.h"
#include "ui/text_label.h"
#include "ui/windows.h"
#include "ui/words.h"

namespace orvane {
namespace {

constexpr Place kClientArea{0, 0, 7680, 5760};
constexpr Place kDateCaption{420, 4575, 900, 315};
constexpr Place kDate{1335, 4545, 1680, 375};
constexpr Place kPrevious{780, 5130, 1095, 420};
constexpr Place kNext{2115, 5130, 1095, 420};
constexpr Place kCancel{5685, 4815, 1365, 555};

// A box of the legend, and the text that goes with it.
struct LegendRow {
  const char* box;
  Place box_place;
  const char* label;
  Place label_place;
  int message;
};

constexpr LegendRow kLegend[] = {
    {"Shape1(2)", {210, 225, 360, 240}, "Label1", {660, 225, 2265, 240}, 114},
    {"Shape1(0)", {2985, 225, 360, 240}, "Label2", {3450, 225, 1515, 240}, 115},
    {"Shape1(1)", {5025, 225, 360, 240}, "Label3", {5505, 225, 2115, 240}, 116},
};

constexpr int kFontSize = 16;
constexpr int kDateFontSize = 20;
constexpr QColor kDateInk{0, 0, 255};
constexpr QColor kDateGround{255, 224, 192};

}  // namespace

DayHistoryWindow::DayHistoryWindow(const State& state, const Disk& disk, const Clock& clock,
                                   const std::string& path)
    : QWidget(nullptr, kFormFlags), history_(disk, clock, path), grid_(new DayGrid(state, this)) {
  setObjectName("frmDateRc");
  setFixedSize(Pixels(kClientArea).size());
  grid_->setGeometry(rect());
  CenterForm(*this);
  setWindowTitle(Message(state, 121));
  AddLegend(state);
  AddDay(state);
  AddButtons(state);
  history_.Form_Load();
  ShowDay();
}

void DayHistoryWindow::AddLegend(const State& state) {
  int row = 0;
  for (const LegendRow& entry : kLegend) {
    new ColourBox(entry.box, entry.box_place, ColourOf(row++), this);
    TextLabel::Style style{.size = kFontSize};
    (new TextLabel(entry.label, entry.label_place, style, this))
        ->Show(Message(state, entry.message));
  }
}

void DayHistoryWindow::AddDay(const State& state) {
  const TextLabel::Style caption{.size = kDateFontSize, .least = kFontSize};
  (new TextLabel("Label5", kDateCaption, caption, this))->Show(Message(state, 117));
  const TextLabel::Style date{
      .size = kDateFontSize, .alignment = Qt::AlignCenter, .ink = kDateInk, .ground = kDateGround};
  lblDate = new TextLabel("lblDate", kDate, date, this);
}

void DayHistoryWindow::AddButtons(const State& state) {
  const auto add = [&](const char* name, const Place& place, int message) {
    QPushButton* button = NewButton(name, place, this);
    button->setFont(look::Face(kFontSize));
    button->setText(Message(state, message));
    return button;
  };
  QPushButton* previous = add("cmdPrev", kPrevious, 118);
  QPushButton* next = add("cmdNext", kNext, 119);
  QPushButton* cancel = add("cmdCancel", kCancel, 120);
  const auto cmdPrev_Click = [this] {
    history_.cmdPrev_Click();
    ShowDay();
  };
  const auto cmdNext_Click = [this] {
    history_.cmdNext_Click();
    ShowDay();
  };
  connect(previous, &QPushButton::clicked, this, cmdPrev_Click);
  connect(next, &QPushButton::clicked, this, cmdNext_Click);
  MakeLeaving(cancel);
  // Before the buttons take the keys to go from one to the other.
  connect(new QShortcut(Qt::Key_Left, this), &QShortcut::activated, this, cmdPrev_Click);
  connect(new QShortcut(Qt::Key_Right, this), &QShortcut::activated, this, cmdNext_Click);
}

void DayHistoryWindow::ShowDay() {
  lblDate->Show(QString::fromStdString(history_.lblDate()));
  grid_->Show(history_);
}

}  // namespace orvane
