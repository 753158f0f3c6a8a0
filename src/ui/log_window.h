// The event log as a list that can be cleared.
#pragma once

#include <string>

#include "app/state.h"
#include "platform/dialogs.h"
#include "platform/disk.h"
#include "records/event_log.h"
#include "ui/form_dialog.h"

namespace orvane {

class LongList;

class LogWindow : public FormDialog {
  Q_OBJECT

 public:
  // Loads the form. `path` names `System.log`.
  LogWindow(const State& state, Disk& disk, Dialogs& dialogs, const std::string& path);

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  void Fill();
  void Clear();

  EventLog log_;
  LongList* list_;
};

}  // namespace orvane
