#include "ui/settings_window.h"

#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QToolButton>

#include "ui/number_box.h"
#include "ui/windows.h"
#include "ui/words.h"

namespace orvane {
namespace {

constexpr int kIconSize = 24;
constexpr int kCaret = 3;
constexpr int kLastPort = 4;

constexpr Words kTitle{"系统设置", "Configure"};
constexpr Words kUpsPorts{"UPS通信端口", "UPS Used Port"};
constexpr Words kModemPorts{"MODEM通信端口", "Modem Used Port"};
constexpr Words kAuto{"自动", "Auto"};
constexpr Words kDialling{"何时需要紧急呼叫", "Call Emergency when"};
constexpr Words kDelay{"UPS关闭前的缓冲时间：", "Shutdown Delay Time"};
constexpr Words kPhone{"紧急呼叫电话：", "PhoneCode for Emergency"};
constexpr Words kLanguageLabel{"语 言 选 择：", "Used Language:"};
constexpr Words kSave{"保存", "Save"};
constexpr Words kExit{"退出", "Cancel"};

struct Condition {
  const char* name;
  Words words;
};
constexpr PerFault<Condition> kConditions = {{{{"call_for_mains", {"市电中断", "AC Fail"}},
                                               {"call_for_battery_low", {"电池欠压", "Batt.Low"}},
                                               {"call_for_ups", {"UPS异常", "UPS Fail"}}}}};

// Columns of the boxes: minutes stand below minutes, and seconds below seconds.
constexpr int kMinutes = 1;
constexpr int kSeconds = 3;

// A box of a row of figures, with its unit in the column behind it.
struct NumberCell {
  std::size_t index;  // of SettingsForm::numbers
  const char* name;
  int column;
  Words unit;
};

struct NumberRow {
  const char* name;
  Words caption;
  std::vector<NumberCell> cells;
};

const std::vector<NumberRow>& NumberRows() {
  static const std::vector<NumberRow> rows = {
      {"mains_delay",
       {"在市电中断后电池可用:", "Expect Batt. Life"},
       {{0, "mains_minutes", kMinutes, {"分", "Min."}},
        {1, "mains_seconds", kSeconds, {"秒。", "Sec."}}}},
      {"low_delay",
       {"估计电池从欠压起可用:", "Batt. Lift When it Low"},
       {{2, "low_minutes", kMinutes, {"分", "Min"}},
        {3, "low_seconds", kSeconds, {"秒。", "Sec."}}}},
      {"warning",
       {"关机前几分钟开始显示警告：", "Warning Before Schedule Down"},
       {{4, "warning_minutes", kMinutes, {"分。", "Min"}}}},
      {"warning_period",
       {"警告信息显示周期：", "Period Warning Time"},
       {{5, "warning_period_seconds", kSeconds, {"秒。", "Sec."}}}},
  };
  return rows;
}

QLabel* NamedLabel(const QString& name, const QString& text) {
  auto* label = new QLabel(text);
  label->setObjectName(name);
  return label;
}

// `caption` stands beside the list and is its buddy, by which a screen reader learns what the list
// is about: it takes the chosen item for the name.
QComboBox* List(const char* name, QLabel& caption, const QStringList& items, int& choice) {
  auto* list = new QComboBox;
  list->setObjectName(name);
  list->setAccessibleName(caption.text());
  list->view()->setAccessibleName(caption.text());
  caption.setBuddy(list);
  list->addItems(items);
  list->setCurrentIndex(choice);
  QObject::connect(list, &QComboBox::currentIndexChanged, list,
                   [&choice](int index) { choice = index; });
  return list;
}

}  // namespace

SettingsWindow::SettingsWindow(Engine& engine, Forms& forms, Dialogs& dialogs)
    : FormWindow("settings", Pick(engine.Shown(), kTitle)),
      state_(engine.Shown()),
      form_(engine, forms, dialogs) {
  form_.Load();
  QVBoxLayout* column = AddColumn();
  column->addWidget(AddPorts("ups_port", Pick(state_, kUpsPorts), 0, form_.ups_port));
  column->addLayout(AddNumbers());
  column->addWidget(AddPorts("modem_port", Pick(state_, kModemPorts), 1, form_.modem_port));
  column->addWidget(AddDialling());
  column->addLayout(AddButtons());
  CenterForm(*this);
}

// The buttons of a group exclude each other because they share the frame.
QWidget* SettingsWindow::AddPorts(const QString& name, const QString& caption, int first,
                                  int& choice) {
  auto* frame = new QGroupBox(caption);
  frame->setObjectName(name);
  auto* row = new QHBoxLayout(frame);
  row->setSpacing(kMargin);
  const bool any = choice != SettingsForm::kNothingChosen;
  for (int port = first; port <= kLastPort; ++port) {
    auto* option = new QRadioButton(port == 0 ? Pick(state_, kAuto) : QString("COM%1").arg(port));
    option->setObjectName(QString("%1_%2").arg(name).arg(port));
    option->setChecked(port == choice);
    // The Tab key comes to the chosen one. The buttons see to that themselves, but not before one
    // of them has had the focus.
    if (any && port != choice) option->setFocusPolicy(Qt::ClickFocus);
    connect(option, &QRadioButton::toggled, this, [&choice, port](bool on) {
      if (on) choice = port;
    });
    row->addWidget(option);
  }
  row->addStretch();
  return frame;
}

QLayout* SettingsWindow::AddNumbers() {
  auto* grid = new QGridLayout;
  grid->setHorizontalSpacing(kMargin / 2);
  grid->setVerticalSpacing(kMargin / 2);
  int line = 0;
  for (const NumberRow& row : NumberRows()) {
    const QString caption = Pick(state_, row.caption);
    grid->addWidget(NamedLabel(QString(row.name) + "_caption", caption), line, 0);
    for (const NumberCell& cell : row.cells) {
      const QString unit = Pick(state_, cell.unit);
      QLineEdit* box = AddNumber(cell.index, caption + ' ' + unit);
      box->setObjectName(cell.name);
      grid->addWidget(box, line, cell.column);
      grid->addWidget(NamedLabel(QString(cell.name) + "_unit", unit), line, cell.column + 1);
    }
    ++line;
  }
  QLabel* delay = NamedLabel("shutdown_delay_caption", Pick(state_, kDelay));
  grid->addWidget(delay, line, 0);
  grid->addWidget(List("shutdown_delay", *delay,
                       {"30 S", "60 S", "120 S", "180 S", "240 S", "300 S", "360 S", "420 S",
                        "480 S", "540 S", "600 S"},
                       form_.shutdown_delay),
                  line, 1, 1, 4, Qt::AlignLeft);
  grid->setColumnMinimumWidth(0, 190);
  grid->setColumnStretch(5, 1);
  return grid;
}

QLineEdit* SettingsWindow::AddNumber(std::size_t index, const QString& name) {
  auto* box = new NumberBox;
  box->setAccessibleName(name);
  box->setAlignment(Qt::AlignRight);
  std::string& text = form_.numbers[index];
  // A value of the file that is longer than what can be typed is shown whole.
  box->setMaxLength(std::max(SettingsForm::kDigits[index], static_cast<int>(text.size())));
  box->setText(QString::fromStdString(text));
  box->setCursorPosition(kCaret);
  box->setFixedWidth(box->fontMetrics().horizontalAdvance("00000") + kMargin);
  box->Takes = &SettingsForm::Takes;
  box->LostFocus = [this, box, &text, index] {
    form_.LeaveNumber(index);
    box->setText(QString::fromStdString(text));
  };
  connect(box, &QLineEdit::textChanged, this,
          [&text](const QString& shown) { text = shown.toStdString(); });
  return box;
}

QWidget* SettingsWindow::AddDialling() {
  auto* frame = new QGroupBox(Pick(state_, kDialling));
  frame->setObjectName("calls");
  auto* conditions = new QHBoxLayout;
  conditions->setSpacing(kMargin);
  for (const Fault fault : kFaults) {
    bool& call = form_.calls[fault];
    auto* check = new QCheckBox(Pick(state_, kConditions[fault].words));
    check->setObjectName(kConditions[fault].name);
    check->setChecked(call);
    connect(check, &QCheckBox::toggled, this, [&call](bool on) { call = on; });
    conditions->addWidget(check);
  }
  conditions->addStretch();

  auto* phone = new QLineEdit(QString::fromStdString(form_.phone));
  phone->setObjectName("phone");
  phone->setAccessibleName(Pick(state_, kPhone));
  connect(phone, &QLineEdit::textChanged, this, [this, phone](const QString& typed) {
    form_.phone = SettingsForm::PhoneText(typed.toStdString());
    const QString taken = QString::fromStdString(form_.phone);
    if (taken == typed) return;
    const auto caret = phone->cursorPosition() - (typed.size() - taken.size());
    phone->setText(taken);
    phone->setCursorPosition(static_cast<int>(caret));
  });

  auto* rows = new QVBoxLayout(frame);
  rows->setSpacing(kMargin / 2);
  rows->addLayout(conditions);
  rows->addWidget(NamedLabel("phone_caption", Pick(state_, kPhone)));
  rows->addWidget(phone);
  return frame;
}

QLayout* SettingsWindow::AddButtons() {
  QLabel* language = NamedLabel("language_caption", Pick(state_, kLanguageLabel));
  auto* row = new QHBoxLayout;
  row->addWidget(language);
  row->addWidget(List("language", *language, {" English", " Chinese(Simp.)"}, form_.language));
  row->addStretch();
  const auto add = [&](const char* name, const Words& words, const char* picture) {
    auto* button = new QToolButton;
    button->setObjectName(name);
    button->setToolTip(Pick(state_, words));
    button->setAccessibleName(Pick(state_, words));
    button->setIcon(QIcon(picture));
    button->setIconSize({kIconSize, kIconSize});
    button->setFocusPolicy(Qt::StrongFocus);
    row->addWidget(button);
    return button;
  };
  QToolButton* save = add("save", kSave, ":/save.svg");
  QToolButton* leave = add("cancel", kExit, ":/cancel.svg");
  Buttons(save, leave);
  connect(save, &QToolButton::clicked, this, [this] { form_.Save(); });
  connect(leave, &QToolButton::clicked, this, [this] { form_.Cancel(); });
  return row;
}

}  // namespace orvane
