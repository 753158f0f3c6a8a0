#include "ui/alert_window.h"

#include <QCloseEvent>
#include <QGridLayout>
#include <QLabel>
#include <QPainter>
#include <QPainterPath>
#include <QPushButton>
#include <QWindow>
#include <utility>

#include "ui/look.h"
#include "ui/windows.h"
#include "ui/words.h"

namespace orvane {
namespace {

constexpr Words kTitle = {"警告", "Warning"};
constexpr Words kWhat = {"警告！市电中断！", "Warning! AC Fail!"};
constexpr Words kWhen = {"系统关闭倒计时(秒)：", "System Will Shutdown After:"};
constexpr const char* kSeconds = "Second(s)";
constexpr Words kOk = {"确 定", "OK"};

constexpr QColor kGround{255, 255, 0};
constexpr QColor kInk{0, 0, 0};

constexpr int kIconSize = 48;
constexpr int kLargePixels = 19;
constexpr int kPixels = 15;
constexpr int kSecondsPixels = 30;

// Wide enough for the longest count, so that the window stands still while the figures change.
constexpr const char* kWidestCount = "60039";

// A flash in a triangle, on a field of 48 x 48.
QPixmap WarningIcon(double ratio) {
  QPixmap picture(QSize(kIconSize, kIconSize) * ratio);
  picture.setDevicePixelRatio(ratio);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  painter.setRenderHint(QPainter::Antialiasing);
  QPainterPath triangle(QPointF(24, 4));
  triangle.lineTo(45, 43);
  triangle.lineTo(3, 43);
  triangle.closeSubpath();
  painter.setPen(QPen(kInk, 3.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.setBrush(QColor(255, 236, 130));
  painter.drawPath(triangle);
  const QPointF flash[] = {{27, 13}, {17.5, 29}, {23.5, 29}, {20.5, 40}, {31, 24}, {24.8, 24}};
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(214, 0, 0));
  painter.drawPolygon(flash, static_cast<int>(std::size(flash)));
  return picture;
}

QLabel* NewLabel(const QString& text, int pixels, QColor ink, bool bold) {
  auto* label = new QLabel(text);
  QFont font = label->font();
  font.setPixelSize(pixels);
  font.setBold(bold);
  label->setFont(font);
  label->setTextFormat(Qt::PlainText);
  QPalette palette = label->palette();
  palette.setColor(QPalette::WindowText, ink);
  label->setPalette(palette);
  return label;
}

}  // namespace

AlertWindow::AlertWindow(const State& state, AlertForm& alert_form)
    : FormDialog(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                 Qt::WindowCloseButtonHint | Qt::WindowStaysOnTopHint),
      alert_form_(alert_form) {
  alert_form_.Load();
  setObjectName("alert");
  setWindowTitle(Pick(state, kTitle));
  QPalette ground = palette();
  ground.setColor(QPalette::Window, kGround);
  setPalette(ground);
  setAutoFillBackground(true);

  auto* image = new QLabel;
  image->setPixmap(WarningIcon(devicePixelRatioF()));
  QLabel* what = NewLabel(Pick(state, kWhat), kLargePixels, kInk, true);
  what->setObjectName("what");
  QLabel* when = NewLabel(Pick(state, kWhen), kPixels, kInk, false);
  when->setObjectName("when");
  Label& count = alert_form_.seconds;
  QLabel* seconds = NewLabel(QString::fromStdString(count.Caption()), kSecondsPixels,
                             look::Exact(count.ForeColor()), true);
  seconds->setObjectName("seconds");
  // The figures stand next to the words that they belong to.
  seconds->setAlignment((state.language == Language::kEnglish ? Qt::AlignRight : Qt::AlignLeft) |
                        Qt::AlignVCenter);
  seconds->setMinimumWidth(seconds->fontMetrics().horizontalAdvance(kWidestCount));
  QLabel* unit = NewLabel(kSeconds, kPixels, kInk, false);
  unit->setObjectName("unit");
  auto* ok = new QPushButton(Pick(state, kOk));
  ok->setObjectName("ok");
  ok->setDefault(true);
  ok->setMinimumWidth(96);
  // The window's yellow is no colour for a button.
  ok->setPalette(QPalette());

  auto* grid = new QGridLayout(this);
  grid->setContentsMargins(24, 20, 24, 18);
  grid->setHorizontalSpacing(18);
  grid->setVerticalSpacing(12);
  grid->addWidget(image, 0, 0, 2, 1, Qt::AlignTop);
  grid->addWidget(what, 0, 1, 1, 3);
  grid->addWidget(when, 1, 1);
  grid->addWidget(seconds, 1, 2);
  grid->addWidget(unit, 1, 3);
  grid->addWidget(ok, 2, 0, 1, 4, Qt::AlignHCenter);
  grid->setColumnStretch(1, 1);
  grid->setSizeConstraint(QLayout::SetFixedSize);
  unit->setVisible(state.language == Language::kEnglish);

  count.Observer = [seconds, &count] { seconds->setText(QString::fromStdString(count.Caption())); };
  CenterForm(*this);
  connect(ok, &QPushButton::clicked, this, [this] { alert_form_.Close(); });
}

AlertWindow::~AlertWindow() {
  Unload();
}

// It belongs to the main window, but must be seen also while that one is minimised.
void AlertWindow::showEvent(QShowEvent* event) {
  if (windowHandle()) windowHandle()->setTransientParent(nullptr);
  FormDialog::showEvent(event);
}

void AlertWindow::closeEvent(QCloseEvent* event) {
  Unload();
  FormDialog::closeEvent(event);
}

void AlertWindow::Unload() {
  if (!std::exchange(loaded_, false)) return;
  alert_form_.seconds.Observer = nullptr;
  alert_form_.Unload();
}

}  // namespace orvane
