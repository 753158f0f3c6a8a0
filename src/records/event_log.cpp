#include "records/event_log.h"

#include <utility>

namespace orvane {

EventLog::EventLog(const State& state, Disk& disk, Dialogs& dialogs, std::string path)
    : state_(state), disk_(disk), dialogs_(dialogs), path_(std::move(path)) {}

bool EventLog::Load() {
  index_ = LogIndex();
  file_.reset();
  if (!disk_.Exists(path_)) return false;
  file_ = disk_.Open(path_);
  if (file_) index_ = LogIndex(file_->Bytes());
  return state_.language == Language::kEnglish;
}

bool EventLog::Clear() {
  if (Lines() == 0) return false;
  if (!dialogs_.Ask(state_.Text(Message::kAskClearLog), "Orvane")) return false;
  static_cast<void>(disk_.Remove(path_));
  index_ = LogIndex();
  file_.reset();
  return true;
}

}  // namespace orvane
