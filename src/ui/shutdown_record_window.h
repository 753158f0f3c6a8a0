// `frmShutRec`: the report of the last shutdown.
#pragma once

#include <QWidget>
#include <string>

#include "app/state.h"
#include "platform/disk.h"
#include "records/shutdown_record.h"

class QShowEvent;
class QWindow;

namespace orvane {

class LongList;

class ShutdownRecordWindow : public QWidget {
  Q_OBJECT

 public:
  // Loads the form. `path` names `SaverApp.INI`.
  ShutdownRecordWindow(const State& state, Disk& disk, const std::string& path);

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  void FollowFocus(const QWindow* window);
  void Form_Activate();
  void ShowFileList();
  void Command1_Click();

  ShutdownRecord record_;
  LongList* List1;
  LongList* List2;
  bool active_ = false;  // of the windows of this program this one was the active one last
};

}  // namespace orvane
