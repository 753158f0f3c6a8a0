#include "check/protection_check.h"

#include "app/settings.h"

namespace orvane {
namespace {

constexpr std::chrono::days kPeriod{1};
// Polls without an answer that mean nothing yet: on one port, and of a search through all of them.
constexpr int kFirstPolls = 4;
constexpr int kSearchPolls = 18;

}  // namespace

SettingsFile LookAtSettings(const Disk& disk, const std::string& path) {
  const auto text = disk.Read(path);
  if (!text) return SettingsFile::kMissing;
  return SettingsAreWhole(*text) ? SettingsFile::kWhole : SettingsFile::kCutShort;
}

void ProtectionCheck::Ask() {
  asked_ = seams_.clock.SystemSeconds();
  file_ = LookAtSettings(seams_.disk, SettingsPath(seams_.host.ProgramDirectory()));
  seams_.inspector.Ask([this] { Judge(); });
  Judge();
}

void ProtectionCheck::Start() {
  heard_ = false;
  polls_ = 0;
  asked_.reset();
  file_ = LookAtSettings(seams_.disk, SettingsPath(seams_.host.ProgramDirectory()));
  Judge();
}

void ProtectionCheck::OnPoll() {
  if (polls_ < kSearchPolls) ++polls_;
  if (panel_.link.ForeColor() != kRed) heard_ = true;
  Update();
}

// A clock that is set back asks early rather than never.
void ProtectionCheck::Update() {
  const std::chrono::sys_seconds now = seams_.clock.SystemSeconds();
  if (!asked_ || now < *asked_ || now - *asked_ >= kPeriod) return Ask();
  Judge();
}

void ProtectionCheck::Judge() {
  Show(JudgeProtection(state_, seams_.clock.Now(), Line(), file_, seams_.inspector.Found(),
                       seams_.inspector.Last()));
}

LineFindings ProtectionCheck::Line() const {
  LineFindings line;
  const SerialPort& port = seams_.ups_port;
  const bool normal = panel_.link.ForeColor() != kRed;
  line.port_name = PortName(state_, port.Number(), seams_.inspector.DeviceOf(port.Number()));
  if (port.IsOpen()) {
    const bool searching = state_.Settings[kUpsPort] == 0 && !normal;
    line.port = searching ? LineFindings::Port::kSearching : LineFindings::Port::kOpen;
  }
  if (normal) {
    line.ups = LineFindings::Ups::kAnswers;
    line.model = panel_.information[UpsDatum::kModel].Caption();
  } else if (port.IsOpen() && !heard_) {
    const int patience = state_.Settings[kUpsPort] == 0 ? kSearchPolls : kFirstPolls;
    if (polls_ < patience) line.ups = LineFindings::Ups::kNotYet;
  }
  return line;
}

}  // namespace orvane
