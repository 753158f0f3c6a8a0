// The report of the last shutdown.
#pragma once

#include <string>

#include "app/state.h"
#include "platform/disk.h"
#include "records/shutdown_report.h"
#include "ui/form_dialog.h"

class QShowEvent;
class QWindow;

namespace orvane {

class LongList;

class ShutdownReportWindow : public FormDialog {
  Q_OBJECT

 public:
  // Loads the form. `path` names `SaverApp.INI`.
  ShutdownReportWindow(const State& state, Disk& disk, const std::string& path);

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  void FollowFocus(const QWindow* window);
  void Activate();
  void ShowFileList();
  void Clear();

  ShutdownReport report_;
  LongList* applications_;
  LongList* files_;
  bool active_ = false;  // of the windows of this program this one was the active one last
};

}  // namespace orvane
