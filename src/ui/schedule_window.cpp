#include "ui/schedule_window.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>

#include "ui/element_name.h"
#include "ui/look.h"
#include "ui/windows.h"

namespace orvane {
namespace {

constexpr int kBoxCharacters = 12;
constexpr int kCellMargin = 10;

constexpr Words kOk{"确  定", "OK"};
constexpr Words kCancel{"取  消", "Cancel"};
constexpr Words kTimeForm{"时:分", "H:mm"};
constexpr Words kDateForm{"年-月-日", "yyyy-MM-dd"};
constexpr Words kNoTime{"不能识别为时间，此项不会执行。例：8:30、20:30、8:30 PM",
                        "Not read as a time: this will never come due. Examples: 8:30, 20:30, "
                        "8:30 PM"};
constexpr Words kNoDate{"不能识别为日期，此项不会执行。例：2001-05-01",
                        "Not read as a date: this will never come due. Example: 2001-05-01"};

// The frame of the table, with its grid lines between the cells of its layout.
class TableFrame : public QFrame {
 public:
  TableFrame() {
    setObjectName("Frame1");
    setBackgroundRole(QPalette::Base);
    setAutoFillBackground(true);
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    const auto* grid = static_cast<const QGridLayout*>(layout());
    QPainter painter(this);
    const QRect whole = rect().adjusted(0, 0, -1, -1);
    const int head = (grid->cellRect(0, 0).bottom() + grid->cellRect(1, 0).top()) / 2;
    painter.fillRect(QRect(whole.left(), whole.top(), whole.width(), head),
                     palette().color(QPalette::AlternateBase));
    painter.setPen(look::kHairline);
    for (int row = 1; row < grid->rowCount(); ++row) {
      const int y = (grid->cellRect(row - 1, 0).bottom() + grid->cellRect(row, 0).top()) / 2;
      painter.drawLine(whole.left(), y, whole.right(), y);
    }
    for (int column = 1; column < grid->columnCount(); ++column) {
      const int x = (grid->cellRect(0, column - 1).right() + grid->cellRect(0, column).left()) / 2;
      painter.drawLine(x, whole.top(), x, whole.bottom());
    }
    painter.drawRect(whole);
  }
};

}  // namespace

ScheduleWindow::ScheduleWindow(const ScheduleLook& look, State& state, const Seams& seams)
    : look_(look), state_(state), editor_(look.section, look.form, state, seams) {
  editor_.Form_Load();
  setObjectName(look_.name);
  setWindowTitle(Pick(state_, look_.title));

  auto* table = new TableFrame;
  auto* grid = new QGridLayout(table);
  grid->setContentsMargins(kCellMargin, kCellMargin / 2, kCellMargin, kCellMargin / 2);
  grid->setHorizontalSpacing(2 * kCellMargin);
  grid->setVerticalSpacing(kCellMargin);
  AddHeads(*grid);
  for (std::size_t row = 0; row < kScheduleEntries; ++row) AddRow(*grid, row);

  auto* accept = new QPushButton(Pick(state_, kOk));
  auto* leave = new QPushButton(Pick(state_, kCancel));
  accept->setObjectName("cmdEnter");
  leave->setObjectName("cmdCancel");
  accept->setDefault(true);
  Buttons(accept, leave);
  connect(accept, &QPushButton::clicked, this, [this] { editor_.cmdEnter_Click(); });
  connect(leave, &QPushButton::clicked, this, [this] { editor_.cmdCancel_Click(); });
  auto* buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(accept);
  buttons->addWidget(leave);

  QVBoxLayout* column = AddColumn();
  column->addWidget(table);
  column->addLayout(buttons);
  CenterForm(*this);
}

void ScheduleWindow::AddHeads(QGridLayout& grid) {
  int column = 0;
  int index = 0;
  const auto add = [&](const Words& head) {
    auto* label = new QLabel(Pick(state_, head));
    label->setObjectName(ElementName("Label1", index++));
    label->setAlignment(Qt::AlignCenter);
    QFont bold(label->font());
    bold.setBold(true);
    label->setFont(bold);
    grid.addWidget(label, 0, column);
  };
  if (look_.row_head) add(*look_.row_head);
  for (const ScheduleColumn& texts : look_.columns) {
    ++column;
    add(texts.head);
  }
}

// Boxes are made along the row, which is the order of the Tab key.
void ScheduleWindow::AddRow(QGridLayout& grid, std::size_t row) {
  const QString caption = Pick(state_, look_.rows[row]);
  auto* check = new QCheckBox(caption);
  check->setObjectName(ElementName("Check1", row));
  check->setChecked(editor_.Check1[row]);
  connect(check, &QCheckBox::toggled, this, [this, row](bool on) { editor_.Check1[row] = on; });
  const int line = static_cast<int>(row) + 1;
  grid.addWidget(check, line, 0);
  int column = 0;
  for (const ScheduleColumn& texts : look_.columns) {
    grid.addWidget(AddBox(texts.first + row, caption + ' ' + Pick(state_, texts.head)), line,
                   ++column);
  }
}

QLineEdit* ScheduleWindow::AddBox(std::size_t index, const QString& name) {
  auto* box = new QLineEdit;
  box->setObjectName(ElementName("txtTime", index));
  box->setAccessibleName(name);
  box->setPlaceholderText(Pick(state_, index < ScheduleEditor::kDate ? kTimeForm : kDateForm));
  box->setFixedWidth(box->fontMetrics().horizontalAdvance('0') * kBoxCharacters + 2 * kCellMargin);
  box->setText(QString::fromStdString(editor_.txtTime[index]));
  Tint(*box, index);
  connect(box, &QLineEdit::textChanged, this, [this, box, index](const QString& text) {
    editor_.txtTime[index] = text.toStdString();
    Tint(*box, index);
  });
  return box;
}

// A slip is seen before the night on which it matters.
void ScheduleWindow::Tint(QLineEdit& box, std::size_t index) {
  const bool reads = ScheduleEditor::Reads(index, editor_.txtTime[index]);
  QPalette colours = palette();
  if (!reads) colours.setColor(QPalette::Base, look::kDangerTint);
  box.setPalette(colours);
  const QString advice =
      reads ? QString() : Pick(state_, index < ScheduleEditor::kDate ? kNoTime : kNoDate);
  box.setToolTip(advice);
  box.setAccessibleDescription(advice);
}

}  // namespace orvane
