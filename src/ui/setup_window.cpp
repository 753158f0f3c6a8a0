#include "ui/setup_window.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QToolButton>

#include "ui/element_name.h"
#include "ui/number_box.h"
#include "ui/windows.h"
#include "ui/words.h"

namespace orvane {
namespace {

constexpr int kIconSize = 24;
constexpr int kCaret = 3;

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
constexpr std::array<Words, 3> kConditions = {
    {{"市电中断", "AC Fail"}, {"电池欠压", "Batt.Low"}, {"UPS异常", "UPS Fail"}}};

// Columns of the boxes: minutes stand below minutes, and seconds below seconds.
constexpr int kMinutes = 1;
constexpr int kSeconds = 3;

// A box of a row of figures, with its unit in the column behind it.
struct NumberCell {
  std::size_t index;  // of `txt`
  int column;
  const char* unit_name;
  Words unit;
};

struct NumberRow {
  const char* name;
  Words caption;
  std::vector<NumberCell> cells;
};

const std::vector<NumberRow>& NumberRows() {
  static const std::vector<NumberRow> rows = {
      {"Label1",
       {"在市电中断后电池可用:", "Expect Batt. Life"},
       {{0, kMinutes, "Label2(0)", {"分", "Min."}}, {1, kSeconds, "Label4(1)", {"秒。", "Sec."}}}},
      {"Label3(0)",
       {"估计电池从欠压起可用:", "Batt. Lift When it Low"},
       {{2, kMinutes, "Label2(1)", {"分", "Min"}}, {3, kSeconds, "Label4(2)", {"秒。", "Sec."}}}},
      {"Label3(1)",
       {"关机前几分钟开始显示警告：", "Warning Before Schedule Down"},
       {{4, kMinutes, "Label2(2)", {"分。", "Min"}}}},
      {"Label3(2)",
       {"警告信息显示周期：", "Period Warning Time"},
       {{5, kSeconds, "Label4(0)", {"秒。", "Sec."}}}},
  };
  return rows;
}

QLabel* NamedLabel(const char* name, const QString& text) {
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
  caption.setBuddy(list);
  list->addItems(items);
  list->setCurrentIndex(choice);
  QObject::connect(list, &QComboBox::currentIndexChanged, list,
                   [&choice](int index) { choice = index; });
  return list;
}

}  // namespace

// A button of a group of ports, by its index in `OptCom`.
struct SetupWindow::Port {
  std::size_t index;
  QString caption;
};

SetupWindow::SetupWindow(State& state, Panel& panel, FrmMain& main, const Seams& seams)
    : state_(state), setup_(state, panel, main, seams) {
  setup_.Form_Load();
  setObjectName("frmSetup");
  setWindowTitle(Pick(state_, kTitle));

  QVBoxLayout* column = AddColumn();
  column->addWidget(
      AddPorts("Frame1", Pick(state_, kUpsPorts),
               {{0, Pick(state_, kAuto)}, {1, "COM1"}, {2, "COM2"}, {3, "COM3"}, {4, "COM4"}}));
  column->addLayout(AddNumbers());
  column->addWidget(AddPorts("Frame2", Pick(state_, kModemPorts),
                             {{9, "COM1"}, {8, "COM2"}, {7, "COM3"}, {6, "COM4"}}));
  column->addWidget(AddDialling());
  column->addLayout(AddButtons());
  CenterForm(*this);
}

// The buttons of a group exclude each other because they share the frame.
QWidget* SetupWindow::AddPorts(const char* name, const QString& caption,
                               std::initializer_list<Port> ports) {
  auto* frame = new QGroupBox(caption);
  frame->setObjectName(name);
  auto* row = new QHBoxLayout(frame);
  row->setSpacing(kMargin);
  bool any = false;
  for (const Port& port : ports) any = any || setup_.OptCom[port.index];
  for (const Port& port : ports) {
    bool& chosen = setup_.OptCom[port.index];
    auto* option = new QRadioButton(port.caption);
    option->setObjectName(ElementName("OptCom", port.index));
    option->setChecked(chosen);
    // The Tab key comes to the chosen one. The buttons see to that themselves, but not before one
    // of them has had the focus.
    if (any && !chosen) option->setFocusPolicy(Qt::ClickFocus);
    connect(option, &QRadioButton::toggled, this, [&chosen](bool on) { chosen = on; });
    row->addWidget(option);
  }
  row->addStretch();
  return frame;
}

QLayout* SetupWindow::AddNumbers() {
  auto* grid = new QGridLayout;
  grid->setHorizontalSpacing(kMargin / 2);
  grid->setVerticalSpacing(kMargin / 2);
  int line = 0;
  for (const NumberRow& row : NumberRows()) {
    const QString caption = Pick(state_, row.caption);
    grid->addWidget(NamedLabel(row.name, caption), line, 0);
    for (const NumberCell& cell : row.cells) {
      const QString unit = Pick(state_, cell.unit);
      grid->addWidget(AddNumber(cell.index, caption + ' ' + unit), line, cell.column);
      grid->addWidget(NamedLabel(cell.unit_name, unit), line, cell.column + 1);
    }
    ++line;
  }
  QLabel* delay = NamedLabel("Label3(3)", Pick(state_, kDelay));
  grid->addWidget(delay, line, 0);
  grid->addWidget(List("cob", *delay,
                       {"30 S", "60 S", "120 S", "180 S", "240 S", "300 S", "360 S", "420 S",
                        "480 S", "540 S", "600 S"},
                       setup_.cob),
                  line, 1, 1, 4, Qt::AlignLeft);
  grid->setColumnMinimumWidth(0, 190);
  grid->setColumnStretch(5, 1);
  return grid;
}

QLineEdit* SetupWindow::AddNumber(std::size_t index, const QString& name) {
  auto* box = new NumberBox;
  box->setObjectName(ElementName("txt", index));
  box->setAccessibleName(name);
  box->setAlignment(Qt::AlignRight);
  std::string& text = setup_.txt[index];
  // A value of the file that is longer than what can be typed is shown whole.
  box->setMaxLength(std::max(FrmSetup::kDigits[index], static_cast<int>(text.size())));
  box->setText(QString::fromStdString(text));
  box->setCursorPosition(kCaret);
  box->setFixedWidth(box->fontMetrics().horizontalAdvance("00000") + kMargin);
  box->KeyPress = &FrmSetup::txt_KeyPress;
  box->LostFocus = [this, box, &text, index] {
    setup_.txt_LostFocus(index);
    box->setText(QString::fromStdString(text));
  };
  connect(box, &QLineEdit::textChanged, this,
          [&text](const QString& shown) { text = shown.toStdString(); });
  return box;
}

QWidget* SetupWindow::AddDialling() {
  auto* frame = new QGroupBox(Pick(state_, kDialling));
  frame->setObjectName("Frame3");
  auto* conditions = new QHBoxLayout;
  conditions->setSpacing(kMargin);
  for (std::size_t i = 0; i < kConditions.size(); ++i) {
    bool& condition = setup_.Check1[i + 1];
    auto* check = new QCheckBox(Pick(state_, kConditions[i]));
    check->setObjectName(ElementName("Check1", i + 1));
    check->setChecked(condition);
    connect(check, &QCheckBox::toggled, this, [&condition](bool on) { condition = on; });
    conditions->addWidget(check);
  }
  conditions->addStretch();

  auto* phone = new QLineEdit(QString::fromStdString(setup_.txtPhone));
  phone->setObjectName("txtPhone");
  phone->setAccessibleName(Pick(state_, kPhone));
  connect(phone, &QLineEdit::textChanged, this, [this, phone](const QString& typed) {
    setup_.txtPhone = FrmSetup::PhoneText(typed.toStdString());
    const QString taken = QString::fromStdString(setup_.txtPhone);
    if (taken == typed) return;
    const auto caret = phone->cursorPosition() - (typed.size() - taken.size());
    phone->setText(taken);
    phone->setCursorPosition(static_cast<int>(caret));
  });

  auto* rows = new QVBoxLayout(frame);
  rows->setSpacing(kMargin / 2);
  rows->addLayout(conditions);
  rows->addWidget(NamedLabel("Label5", Pick(state_, kPhone)));
  rows->addWidget(phone);
  return frame;
}

QLayout* SetupWindow::AddButtons() {
  QLabel* language = NamedLabel("Label6", Pick(state_, kLanguageLabel));
  auto* row = new QHBoxLayout;
  row->addWidget(language);
  row->addWidget(
      List("cobLanguege", *language, {" English", " Chinese(Simp.)"}, setup_.cobLanguege));
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
  QToolButton* save = add("cmdSave", kSave, ":/save.svg");
  QToolButton* leave = add("cmdExit", kExit, ":/cancel.svg");
  Buttons(save, leave);
  connect(save, &QToolButton::clicked, this, [this] { setup_.cmdSave_Click(); });
  connect(leave, &QToolButton::clicked, this, [this] { setup_.cmdExit_Click(); });
  return row;
}

}  // namespace orvane
