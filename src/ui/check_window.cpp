#include "ui/check_window.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>
#include <algorithm>
#include <initializer_list>
#include <string>

#include "check/check_rows.h"
#include "ui/look.h"
#include "ui/shield_button.h"
#include "ui/twips.h"
#include "ui/windows.h"
#include "ui/words.h"

namespace orvane {
namespace {

// In twips.
constexpr int kFindingWidth = 6450;
constexpr int kBesideFinding = 5100;
constexpr int kBesideRows = 1950;  // title, summary and buttons

constexpr int kShieldSize = 16;
constexpr int kSummarySize = 32;
constexpr int kSummaryFont = 16;

// What the program can do about a point of its own accord; the point's action tells when.
struct Button {
  CheckPoint point;
  CheckAction action;
  Message words;
};

constexpr Button kButtons[] = {
    {CheckPoint::kPort, CheckAction::kOpenSettings, Message::kCheckSettingsButton},
    {CheckPoint::kDelays, CheckAction::kOpenSettings, Message::kCheckSettingsButton},
    {CheckPoint::kClock, CheckAction::kOpenSpecialDays, Message::kCheckSpecialDaysButton},
    {CheckPoint::kSettings, CheckAction::kOpenSettings, Message::kCheckSettingsButton},
};

Message GradeWord(Grade grade) {
  constexpr Message kWords[] = {Message::kCheckGreen, Message::kCheckAmber, Message::kCheckRed};
  return kWords[static_cast<std::size_t>(grade)];
}

// Less than designed where names, findings and ticks side by side are wider than the screen.
int FindingWidth() {
  const int screen = QGuiApplication::primaryScreen()->availableSize().width();
  return qRound(std::min(Pixels(kFindingWidth), screen - Pixels(kBesideFinding)));
}

// The rows: all of them where the screen is high enough, else as many as it shows, to be scrolled.
class RowsArea : public QScrollArea {
 public:
  RowsArea(const QString& name, QWidget* parent) : QScrollArea(parent) {
    setObjectName("rows");
    setAccessibleName(name);
    setFrameShape(NoFrame);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setWidget(new QWidget(this));
    for (QWidget* ground : {viewport(), widget()}) ground->setAutoFillBackground(false);
  }

  QSize sizeHint() const override {
    QSize size = widget()->sizeHint();
    if (size.height() > Room()) size += QSize(verticalScrollBar()->sizeHint().width(), 0);
    return size.boundedTo({size.width(), Room()});
  }
  QSize minimumSizeHint() const override { return sizeHint(); }

  bool eventFilter(QObject* object, QEvent* event) override {
    const bool taken = QScrollArea::eventFilter(object, event);
    if (event->type() == QEvent::LayoutRequest) {
      // Keys scroll where there is something to scroll.
      setFocusPolicy(widget()->sizeHint().height() > Room() ? Qt::TabFocus : Qt::NoFocus);
      updateGeometry();
    }
    return taken;
  }

 private:
  int Room() const { return screen()->availableSize().height() - qRound(Pixels(kBesideRows)); }
};

QString Name(const char* what, int number) {
  return QString::fromLatin1(what) + QString::number(number);
}

}  // namespace

CheckWindow::CheckWindow(Engine& engine)
    : FormWindow("protection_check", Pick(engine.Shown(), Message::kCheckTitle)),
      state_(engine.Shown()),
      engine_(engine) {
  QVBoxLayout* column = AddColumn();
  auto* head = new QHBoxLayout;
  column->addLayout(head);
  summary_shield_ = new QLabel(this);
  summary_shield_->setObjectName("summary_shield");
  head->addWidget(summary_shield_);
  summary_ = new QLabel(this);
  summary_->setObjectName("summary");
  summary_->setFont(look::Face(kSummaryFont, true));
  head->addWidget(summary_, 1);

  auto* area = new RowsArea(windowTitle(), this);
  column->addWidget(area);
  auto* grid = new QGridLayout(area->widget());
  grid->setContentsMargins({});
  grid->setHorizontalSpacing(kMargin);
  grid->setVerticalSpacing(column->spacing());
  for (int number = 0; number < static_cast<int>(kCheckPoints); ++number) {
    rows_.push_back(AddRow(*grid, number));
  }
  AddButtons(*column);
  engine_.Check().Observer = [this] { Refresh(); };
  engine_.Check().Ask();
  Refresh();
  CenterForm(*this);
}

CheckWindow::~CheckWindow() {
  engine_.Check().Observer = nullptr;
}

// The row of a point; null where nothing is known of it.
const CheckRow* CheckWindow::Found(std::size_t number) const {
  for (const CheckRow& row : engine_.Check().Rows()) {
    if (static_cast<std::size_t>(row.point) == number) return &row;
  }
  return nullptr;
}

CheckWindow::Row CheckWindow::AddRow(QGridLayout& grid, int number) {
  Row row;
  row.shield = new QLabel(this);
  row.shield->setObjectName(Name("shield", number));
  grid.addWidget(row.shield, number, 0, Qt::AlignTop);
  row.name = new QLabel(this);
  row.name->setObjectName(Name("name", number));
  row.name->setFont(look::Face(look::kTextSize, true));
  grid.addWidget(row.name, number, 1, Qt::AlignTop);
  row.finding = new QLabel(this);
  row.finding->setObjectName(Name("finding", number));
  row.finding->setTextFormat(Qt::PlainText);
  row.finding->setWordWrap(true);
  row.finding->setFixedWidth(FindingWidth());
  row.finding->setTextInteractionFlags(Qt::TextSelectableByMouse);
  row.finding->setFocusPolicy(Qt::NoFocus);
  grid.addWidget(row.finding, number, 2, Qt::AlignTop);
  if (number == static_cast<int>(CheckPoint::kAutostart)) {
    row.tick = new QCheckBox(Pick(state_, Message::kCheckAutostartTick), this);
    row.tick->setObjectName("autostart");
    connect(row.tick, &QCheckBox::clicked, this, [this](bool on) {
      static_cast<void>(engine_.Check().StartWithDesktop(on));
      Refresh();
    });
    grid.addWidget(row.tick, number, 3, Qt::AlignTop);
    return row;
  }
  for (const Button& button : kButtons) {
    if (number != static_cast<int>(button.point)) continue;
    row.button = new QPushButton(Pick(state_, button.words), this);
    row.button->setObjectName(Name("act", number));
    row.button->setAutoDefault(false);
    connect(row.button, &QPushButton::clicked, this, [this, number] {
      const CheckRow* found = Found(static_cast<std::size_t>(number));
      if (!found) return;
      switch (found->action) {
        case CheckAction::kOpenSettings:
          return engine_.OpenSettings();
        case CheckAction::kOpenSpecialDays:
          return engine_.OpenSpecialDays();
        case CheckAction::kOpenSelfTests:
          return engine_.OpenSelfTests();
        case CheckAction::kAutostart:
        case CheckAction::kNone:
          break;
      }
    });
    grid.addWidget(row.button, number, 3, Qt::AlignTop);
  }
  return row;
}

void CheckWindow::AddButtons(QVBoxLayout& column) {
  auto* line = new QHBoxLayout;
  column.addLayout(line);
  const auto add = [&](const char* name, Message words) {
    auto* button = new QPushButton(Pick(state_, words), this);
    button->setObjectName(name);
    button->setAutoDefault(false);
    line->addWidget(button);
    return button;
  };
  QPushButton* again = add("again", Message::kCheckAgain);
  connect(again, &QPushButton::clicked, this, [this] { engine_.Check().Ask(); });
  QPushButton* notify = add("notify", Message::kCheckNotify);
  connect(notify, &QPushButton::clicked, this, [this] { engine_.Check().SendTestNotification(); });
  line->addStretch(1);
  QPushButton* leave = add("close", Message::kCheckClose);
  connect(leave, &QPushButton::clicked, this, &QWidget::close);
  Buttons(again, leave);
  again->setFocus();
}

QPixmap CheckWindow::ShieldPixmap(Grade grade, int size) const {
  const int pixels = qRound(size * form_scale);
  return ShieldIcon(grade).pixmap({pixels, pixels}, devicePixelRatioF());
}

void CheckWindow::Refresh() {
  const auto& rows = engine_.Check().Rows();
  for (std::size_t i = 0; i < rows_.size(); ++i) {
    const CheckRow* found = Found(i);
    for (QWidget* part : std::initializer_list<QWidget*>{
             rows_[i].shield, rows_[i].name, rows_[i].finding, rows_[i].button, rows_[i].tick}) {
      if (part) part->setVisible(found != nullptr);
    }
    if (found) Show(rows_[i], *found);
  }
  const Grade worst = WorstGrade(rows);
  summary_shield_->setPixmap(ShieldPixmap(worst, kSummarySize));
  summary_shield_->setAccessibleName(Pick(state_, GradeWord(worst)));
  summary_->setText(QString::fromStdString(CheckSummary(state_, worst, OpenPoints(rows))));
}

void CheckWindow::Show(const Row& row, const CheckRow& found) {
  row.shield->setPixmap(ShieldPixmap(found.grade, kShieldSize));
  row.shield->setAccessibleName(Pick(state_, GradeWord(found.grade)));
  row.name->setText(QString::fromStdString(found.name));
  std::string text = found.finding;
  if (!found.remedy.empty()) text += '\n' + found.remedy;
  row.finding->setText(QString::fromStdString(text));
  // A text that wraps tells a grid less than the height that it takes.
  row.finding->setMinimumHeight(row.finding->heightForWidth(FindingWidth()));
  if (row.button) {
    const bool acts = found.action != CheckAction::kNone;
    const bool tests = found.action == CheckAction::kOpenSelfTests;
    if (found.point == CheckPoint::kClock) {
      row.button->setText(
          Pick(state_, tests ? Message::kCheckSelfTestsButton : Message::kCheckSpecialDaysButton));
    }
    row.button->setVisible(acts);
  }
  if (row.tick) row.tick->setChecked(found.grade == Grade::kReady);
}

}  // namespace orvane
