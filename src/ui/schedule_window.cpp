#include "ui/schedule_window.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>

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

bool IsDate(std::string ScheduleEditor::Row::*field) {
  return field == &ScheduleEditor::Row::date;
}

// The frame of the table, with its grid lines between the cells of its layout.
class TableFrame : public QFrame {
 public:
  TableFrame() {
    setObjectName("table");
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
    painter.setPen(QColor(look::kHairline));
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

ScheduleWindow::ScheduleWindow(const ScheduleLook& look, const State& state, ScheduleStore& store,
                               Forms& forms)
    : FormWindow(look.name, Pick(state, look.title)),
      look_(look),
      state_(state),
      editor_(look.section, look.form, store, forms) {
  editor_.Load();
  auto* table = new TableFrame;
  auto* grid = new QGridLayout(table);
  grid->setContentsMargins(kCellMargin, kCellMargin / 2, kCellMargin, kCellMargin / 2);
  grid->setHorizontalSpacing(2 * kCellMargin);
  grid->setVerticalSpacing(kCellMargin);
  AddHeads(*grid);
  for (std::size_t row = 0; row < kScheduleEntries; ++row) AddRow(*grid, row);

  auto* accept = new QPushButton(Pick(state_, kOk));
  auto* leave = new QPushButton(Pick(state_, kCancel));
  accept->setObjectName("ok");
  leave->setObjectName("cancel");
  accept->setDefault(true);
  Buttons(accept, leave);
  connect(accept, &QPushButton::clicked, this, [this] { editor_.Save(); });
  connect(leave, &QPushButton::clicked, this, [this] { editor_.Cancel(); });
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
  const auto add = [&](const char* name, const Words& head) {
    auto* label = new QLabel(Pick(state_, head));
    label->setObjectName(QString(name) + "_head");
    label->setAlignment(Qt::AlignCenter);
    QFont bold(label->font());
    bold.setBold(true);
    label->setFont(bold);
    grid.addWidget(label, 0, column);
  };
  if (look_.row_head) add("enabled", *look_.row_head);
  for (const ScheduleColumn& texts : look_.columns) {
    ++column;
    add(texts.name, texts.head);
  }
}

// Boxes are made along the row, which is the order of the Tab key.
void ScheduleWindow::AddRow(QGridLayout& grid, std::size_t row) {
  const QString caption = Pick(state_, look_.rows[row]);
  auto* check = new QCheckBox(caption);
  check->setObjectName(QString("enabled_%1").arg(row + 1));
  check->setChecked(editor_.rows[row].enabled);
  connect(check, &QCheckBox::toggled, this,
          [this, row](bool on) { editor_.rows[row].enabled = on; });
  const int line = static_cast<int>(row) + 1;
  grid.addWidget(check, line, 0);
  int column = 0;
  for (const ScheduleColumn& texts : look_.columns) {
    grid.addWidget(AddBox(texts, row, caption + ' ' + Pick(state_, texts.head)), line, ++column);
  }
}

QLineEdit* ScheduleWindow::AddBox(const ScheduleColumn& column, std::size_t row,
                                  const QString& name) {
  std::string ScheduleEditor::Row::*const field = column.box;
  std::string& shown = editor_.rows[row].*field;
  auto* box = new QLineEdit;
  box->setObjectName(QString("%1_%2").arg(column.name).arg(row + 1));
  box->setAccessibleName(name);
  box->setPlaceholderText(Pick(state_, IsDate(field) ? kDateForm : kTimeForm));
  box->setFixedWidth(box->fontMetrics().horizontalAdvance('0') * kBoxCharacters + 2 * kCellMargin);
  box->setText(QString::fromStdString(shown));
  Tint(*box, field);
  connect(box, &QLineEdit::textChanged, this, [this, box, field, &shown](const QString& text) {
    shown = text.toStdString();
    Tint(*box, field);
  });
  return box;
}

// A slip is seen before the night on which it matters.
void ScheduleWindow::Tint(QLineEdit& box, std::string ScheduleEditor::Row::*field) {
  const bool reads = ScheduleEditor::Reads(field, box.text().toStdString());
  QPalette colours = palette();
  if (!reads) colours.setColor(QPalette::Base, look::kDangerTint);
  box.setPalette(colours);
  const QString advice = reads ? QString() : Pick(state_, IsDate(field) ? kNoDate : kNoTime);
  box.setToolTip(advice);
  box.setAccessibleDescription(advice);
}

}  // namespace orvane
