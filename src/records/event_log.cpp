#include "records/event_log.h"

#include <utility>

#include "app/message_numbers.h"

namespace orvane {

EventLog::EventLog(const State& state, Disk& disk, Dialogs& dialogs, std::string path)
    : state_(state), disk_(disk), dialogs_(dialogs), path_(std::move(path)) {}

bool EventLog::Form_Load() {
  index_ = LogIndex();
  file_.reset();
  if (!disk_.Exists(path_)) return false;
  file_ = disk_.Open(path_);
  if (file_) index_ = LogIndex(file_->Bytes());
  return state_.ResBase == 0;
}

bool EventLog::cmdClear_Click() {
  if (Lines() == 0) return false;
  if (!dialogs_.Ask(state_.Message(message::kAskClearLog), "Orvane")) return false;
  static_cast<void>(disk_.Remove(path_));
  index_ = LogIndex();
  file_.reset();
  return true;
}

}  // namespace orvane
