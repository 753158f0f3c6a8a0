#include "ui/shutdown_report_window.h"

#include <QGuiApplication>
#include <QPushButton>
#include <QWindow>
#include <utility>

#include "ui/form_parts.h"
#include "ui/long_list.h"
#include "ui/text_label.h"
#include "ui/twips.h"
#include "ui/windows.h"
#include "ui/words.h"

namespace orvane {
namespace {

constexpr Words kTitle = {"关闭系统纪录", "Close Information"};
constexpr Words kApplications = {"上次正常关闭的应用程序窗口：", "Close Application"};
constexpr Words kFiles = {"应用程序保存的相关文件：", "Related Saving FileNames"};
constexpr Words kClear = {"清除纪录(&C)", "&Clear"};
constexpr Words kExit = {"关闭窗口(&E)", "&Exit"};

constexpr Place kClientArea{0, 0, 4320, 5040};
// The labels reach down to their lists.
constexpr Place kApplicationsLabel{120, 120, 4095, 240};
constexpr Place kApplicationsList{120, 360, 4095, 1500};
constexpr Place kFilesLabel{120, 2160, 4095, 240};
constexpr Place kFilesList{120, 2400, 4095, 2040};
constexpr Place kClearPlace{480, 4560, 1335, 375};
constexpr Place kExitPlace{2640, 4560, 1335, 375};

TextLabel* NewLabel(const char* name, const Place& place, const QString& text, QWidget* parent) {
  auto* label = new TextLabel(name, place, {}, parent);
  label->Show(text);
  return label;
}

LongList* NewList(const char* name, const Place& place, const QString& meaning, QWidget* parent) {
  auto* list = new LongList(parent);
  list->setObjectName(name);
  list->setGeometry(Pixels(place));
  list->setAccessibleName(meaning);
  return list;
}

}  // namespace

ShutdownReportWindow::ShutdownReportWindow(const State& state, Disk& disk, const std::string& path)
    : FormDialog(kFormFlags), report_(disk, path) {
  setObjectName("shutdown_report");
  setFixedSize(Pixels(kClientArea).size());
  CenterForm(*this);
  setWindowTitle(Pick(state, kTitle));
  MakeResizable();
  auto* applications_caption =
      NewLabel("applications_caption", kApplicationsLabel, Pick(state, kApplications), this);
  applications_ = NewList("applications", kApplicationsList, Pick(state, kApplications), this);
  auto* files_caption = NewLabel("files_caption", kFilesLabel, Pick(state, kFiles), this);
  files_ = NewList("files", kFilesList, Pick(state, kFiles), this);
  QPushButton* clear = NewButton("clear", kClearPlace, this);
  clear->setText(Pick(state, kClear));
  QPushButton* exit = NewButton("exit", kExitPlace, this);
  exit->setText(Pick(state, kExit));

  // What an application has saved is told by the end of a path.
  files_->setTextElideMode(Qt::ElideMiddle);
  constexpr double kUpper = 0.4;
  Anchor(applications_caption, {0, 0, 1, 0});
  Anchor(applications_, {0, 0, 1, kUpper});
  Anchor(files_caption, {0, kUpper, 1, kUpper});
  Anchor(files_, {0, kUpper, 1, 1});
  for (QPushButton* button : {clear, exit}) Anchor(button, {0.5, 1, 0.5, 1});

  // By keys or by mouse; a click on the entry that is selected already counts as well.
  connect(applications_->selectionModel(), &QItemSelectionModel::selectionChanged, this,
          &ShutdownReportWindow::ShowFileList);
  connect(applications_, &QListView::clicked, this, &ShutdownReportWindow::ShowFileList);
  connect(clear, &QPushButton::clicked, this, &ShutdownReportWindow::Clear);
  MakeLeaving(exit);
  connect(qGuiApp, &QGuiApplication::focusWindowChanged, this, &ShutdownReportWindow::FollowFocus);
}

void ShutdownReportWindow::showEvent(QShowEvent* event) {
  FormDialog::showEvent(event);
  if (!std::exchange(active_, true)) Activate();
}

// Another program or a message box in between makes no difference: it is from another form that the
// user comes back.
void ShutdownReportWindow::FollowFocus(const QWindow* window) {
  if (!window || window->isModal()) return;
  const bool active = window == windowHandle();
  if (!std::exchange(active_, active) && active) Activate();
}

void ShutdownReportWindow::Activate() {
  report_.Activate();
  applications_->Lines().Fill(static_cast<int>(report_.Applications()), [this](int row) {
    return QString::fromStdString(report_.Title(row));
  });
}

void ShutdownReportWindow::ShowFileList() {
  const QModelIndexList selected = applications_->selectionModel()->selectedIndexes();
  if (selected.isEmpty()) return;
  report_.ShowFileList(selected.first().row());
  files_->Lines().Fill(static_cast<int>(report_.Files()),
                       [this](int row) { return QString::fromStdString(report_.FileName(row)); });
}

void ShutdownReportWindow::Clear() {
  report_.Clear();
  for (LongList* list : {applications_, files_}) list->Lines().Fill(0, {});
}

}  // namespace orvane
