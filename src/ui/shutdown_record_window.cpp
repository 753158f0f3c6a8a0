#include "ui/shutdown_record_window.h"

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

ShutdownRecordWindow::ShutdownRecordWindow(const State& state, Disk& disk, const std::string& path)
    : QWidget(nullptr, kFormFlags), record_(disk, path) {
  setObjectName("frmShutRec");
  setFixedSize(Pixels(kClientArea).size());
  CenterForm(*this);
  setWindowTitle(Pick(state, kTitle));
  NewLabel("Label2", kApplicationsLabel, Pick(state, kApplications), this);
  List1 = NewList("List1", kApplicationsList, Pick(state, kApplications), this);
  NewLabel("Label1", kFilesLabel, Pick(state, kFiles), this);
  List2 = NewList("List2", kFilesList, Pick(state, kFiles), this);
  QPushButton* clear = NewButton("Command1", kClearPlace, this);
  clear->setText(Pick(state, kClear));
  QPushButton* exit = NewButton("Command2", kExitPlace, this);
  exit->setText(Pick(state, kExit));

  // By keys or by mouse; a click on the entry that is selected already counts as well.
  connect(List1->selectionModel(), &QItemSelectionModel::selectionChanged, this,
          &ShutdownRecordWindow::ShowFileList);
  connect(List1, &QListView::clicked, this, &ShutdownRecordWindow::ShowFileList);
  connect(clear, &QPushButton::clicked, this, &ShutdownRecordWindow::Command1_Click);
  MakeLeaving(exit);
  connect(qGuiApp, &QGuiApplication::focusWindowChanged, this, &ShutdownRecordWindow::FollowFocus);
}

void ShutdownRecordWindow::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  if (!std::exchange(active_, true)) Form_Activate();
}

// Another program or a message box in between makes no difference: it is from another form that the
// user comes back.
void ShutdownRecordWindow::FollowFocus(const QWindow* window) {
  if (!window || window->isModal()) return;
  const bool active = window == windowHandle();
  if (!std::exchange(active_, active) && active) Form_Activate();
}

void ShutdownRecordWindow::Form_Activate() {
  record_.Form_Activate();
  List1->Lines().Fill(static_cast<int>(record_.Applications()),
                      [this](int row) { return QString::fromStdString(record_.Title(row)); });
}

void ShutdownRecordWindow::ShowFileList() {
  const QModelIndexList selected = List1->selectionModel()->selectedIndexes();
  if (selected.isEmpty()) return;
  record_.ShowFileList(selected.first().row());
  List2->Lines().Fill(static_cast<int>(record_.Files()),
                      [this](int row) { return QString::fromStdString(record_.FileName(row)); });
}

void ShutdownRecordWindow::Command1_Click() {
  record_.Command1_Click();
  for (LongList* list : {List1, List2}) list->Lines().Fill(0, {});
}

}  // namespace orvane
