#include "ui/day_history_window.h"

#include <QPushButton>
#include <QShortcut>
#include <utility>

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
  Message message;
};

constexpr LegendRow kLegend[] = {
    {"schedule_box",
     {210, 225, 360, 240},
     "schedule_legend",
     {660, 225, 2265, 240},
     Message::kScheduleLegend},
    {"mains_box",
     {2985, 225, 360, 240},
     "mains_legend",
     {3450, 225, 1515, 240},
     Message::kMainsLegend},
    {"battery_box",
     {5025, 225, 360, 240},
     "battery_legend",
     {5505, 225, 2115, 240},
     Message::kBatteryLegend},
};

constexpr int kFontSize = 16;
constexpr int kDateFontSize = 20;
constexpr QColor kDateInk{0, 0, 255};
constexpr QColor kDateGround{255, 224, 192};

}  // namespace

DayHistoryWindow::DayHistoryWindow(const State& state, const Disk& disk, const Clock& clock,
                                   const std::string& path)
    : FormDialog(kFormFlags), history_(disk, clock, path), grid_(new DayGrid(state, this)) {
  setObjectName("day_history");
  setFixedSize(Pixels(kClientArea).size());
  grid_->setGeometry(rect());
  CenterForm(*this);
  setWindowTitle(Pick(state, Message::kDayHistoryTitle));
  AddLegend(state);
  AddDay(state);
  AddButtons(state);
  // Once all parts have their places.
  MakeResizable();
  for (const char* name : {"date_caption", "date", "previous", "next"}) {
    Anchor(findChild<QWidget*>(name), {0, 1, 0, 1});
  }
  Anchor(findChild<QWidget*>("cancel"), {1, 1, 1, 1});
  Anchor(grid_, {0, 0, 1, 1});
  history_.Load();
  ShowDay();
}

void DayHistoryWindow::AddLegend(const State& state) {
  int row = 0;
  for (const LegendRow& entry : kLegend) {
    new ColourBox(entry.box, entry.box_place, ColourOf(row++), this);
    TextLabel::Style style{.size = kFontSize};
    (new TextLabel(entry.label, entry.label_place, style, this))->Show(Pick(state, entry.message));
  }
}

void DayHistoryWindow::AddDay(const State& state) {
  const TextLabel::Style caption{.size = kDateFontSize, .least = kFontSize};
  (new TextLabel("date_caption", kDateCaption, caption, this))
      ->Show(Pick(state, Message::kDateCaption));
  const TextLabel::Style date{
      .size = kDateFontSize, .alignment = Qt::AlignCenter, .ink = kDateInk, .ground = kDateGround};
  date_ = new TextLabel("date", kDate, date, this);
}

void DayHistoryWindow::AddButtons(const State& state) {
  const auto add = [&](const char* name, const Place& place, Message message) {
    QPushButton* button = NewButton(name, place, this);
    button->setFont(look::Face(kFontSize));
    button->setText(Pick(state, message));
    return button;
  };
  QPushButton* previous = add("previous", kPrevious, Message::kPreviousDay);
  QPushButton* next = add("next", kNext, Message::kNextDay);
  QPushButton* cancel = add("cancel", kCancel, Message::kCancel);
  const auto show_previous = [this] {
    history_.ShowPrevious();
    ShowDay();
  };
  const auto show_next = [this] {
    history_.ShowNext();
    ShowDay();
  };
  connect(previous, &QPushButton::clicked, this, show_previous);
  connect(next, &QPushButton::clicked, this, show_next);
  MakeLeaving(cancel);
  // Before the buttons take the keys to go from one to the other.
  connect(new QShortcut(Qt::Key_Left, this), &QShortcut::activated, this, show_previous);
  connect(new QShortcut(Qt::Key_Right, this), &QShortcut::activated, this, show_next);
  constexpr std::pair<QKeyCombination, void (DayHistory::*)()> kLeaps[] = {
      {Qt::Key_PageUp, &DayHistory::ShowPreviousMonth},
      {Qt::Key_PageDown, &DayHistory::ShowNextMonth},
      {Qt::Key_Home, &DayHistory::ShowToday},
      {Qt::CTRL | Qt::Key_Left, &DayHistory::ShowPreviousRecords},
      {Qt::CTRL | Qt::Key_Right, &DayHistory::ShowNextRecords},
  };
  for (const auto& [keys, leap] : kLeaps) {
    connect(new QShortcut(keys, this), &QShortcut::activated, this, [this, leap = leap] {
      (history_.*leap)();
      ShowDay();
    });
  }
}

void DayHistoryWindow::ShowDay() {
  date_->Show(QString::fromStdString(history_.Date()));
  grid_->Show(history_);
}

}  // namespace orvane
