#include "records/event_log.h"

#include <utility>

#include "records/lines.h"

namespace orvane {
namespace {

constexpr std::size_t kUsualLine = 32;  // bytes

}  // namespace

EventLog::EventLog(const State& state, Disk& disk, Dialogs& dialogs, std::string path)
    : state_(state), disk_(disk), dialogs_(dialogs), path_(std::move(path)) {}

bool EventLog::Load() {
  Forget();
  if (!disk_.Exists(path_)) return false;
  bytes_ = disk_.Read(path_).value_or("");
  lines_.reserve(bytes_.size() / kUsualLine);
  ForEachLine(bytes_, [this](std::string_view line) { lines_.push_back(line); });
  return state_.language == Language::kEnglish;
}

bool EventLog::Clear() {
  if (lines_.empty()) return false;
  if (!dialogs_.Ask(state_.Text(Message::kAskClearLog), "Orvane")) return false;
  static_cast<void>(disk_.Remove(path_));
  Forget();
  return true;
}

void EventLog::Forget() {
  lines_ = {};
  bytes_ = {};
}

}  // namespace orvane
