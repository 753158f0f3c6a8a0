#include "ui/log_window.h"

#include <QPushButton>
#include <algorithm>
#include <limits>

#include "ui/form_parts.h"
#include "ui/log_text.h"
#include "ui/long_list.h"
#include "ui/twips.h"
#include "ui/windows.h"
#include "ui/words.h"

namespace orvane {
namespace {

constexpr Words kTitle = {"事件记录", "Log File"};
constexpr Words kClear = {"清空(&C)", "&Clear"};
constexpr Words kCancel = {"离开(&E)", "&Exit"};

constexpr Place kClientArea{0, 0, 5355, 5220};
constexpr Place kList{30, 30, 5265, 4140};
constexpr Place kClearPlace{1140, 4440, 1455, 480};
constexpr Place kCancelPlace{3060, 4440, 1455, 480};

constexpr QColor kPurple{192, 0, 192};

QPalette WhiteOnPurple(QPalette palette) {
  palette.setColor(QPalette::Base, kPurple);
  palette.setColor(QPalette::Text, Qt::white);
  palette.setColor(QPalette::Highlight, Qt::white);
  palette.setColor(QPalette::HighlightedText, kPurple);
  return palette;
}

}  // namespace

LogWindow::LogWindow(const State& state, Disk& disk, Dialogs& dialogs, const std::string& path)
    : FormDialog(kFormFlags), log_(state, disk, dialogs, path), list_(new LongList(this)) {
  setObjectName("log");
  setFixedSize(Pixels(kClientArea).size());
  list_->setObjectName("lines");
  list_->setGeometry(Pixels(kList));
  list_->setPalette(WhiteOnPurple(list_->palette()));
  QPushButton* clear = NewButton("clear", kClearPlace, this);
  QPushButton* cancel = NewButton("exit", kCancelPlace, this);
  connect(clear, &QPushButton::clicked, this, &LogWindow::Clear);
  MakeLeaving(cancel);

  MakeResizable();
  Anchor(list_, {0, 0, 1, 1});
  for (QPushButton* button : {clear, cancel}) Anchor(button, {0.5, 1, 0.5, 1});
  CenterForm(*this);
  const bool english = log_.Load();
  setWindowTitle(Pick(english, kTitle));
  list_->setAccessibleName(Pick(english, kTitle));
  clear->setText(Pick(english, kClear));
  cancel->setText(Pick(english, kCancel));
  Fill();
}

void LogWindow::Fill() {
  constexpr std::size_t kMostRows = std::numeric_limits<int>::max();
  list_->Lines().Fill(static_cast<int>(std::min(log_.Lines().size(), kMostRows)), [this](int row) {
    return LogText(log_.Lines()[static_cast<std::size_t>(row)]);
  });
}

// Opens at the newest line. Not before the list has its size.
void LogWindow::showEvent(QShowEvent* event) {
  FormDialog::showEvent(event);
  const QAbstractItemModel& lines = *list_->model();
  list_->selectionModel()->setCurrentIndex(lines.index(lines.rowCount() - 1, 0),
                                           QItemSelectionModel::NoUpdate);
  list_->scrollToBottom();
}

void LogWindow::Clear() {
  if (log_.Clear()) Fill();
}

}  // namespace orvane
