#include "protect/shutdown.h"

#include <chrono>

#include "link/commands.h"
#include "protect/notices.h"

namespace orvane {
namespace {

constexpr std::chrono::milliseconds kCompanionLimit{40000};

}  // namespace

void Shutdown::ShutdownSequence(Message log_line, std::optional<RecordCode> record) {
  if (begun_) return;
  begun_ = true;
  if (OnBegin) OnBegin();
  Host& host = seams_.host;
  seams_.forms.Dismiss();
  seams_.forms.Unload(Form::kAlert);
  seams_.forms.Unload(Form::kSettings);
  seams_.timers.Stop();
  // A reply that is still under way would start the count again.
  seams_.ups_port.Notify(false);
  panel_.status_line.Caption(state_.Text(Message::kSavingFiles));
  host.WithdrawNotification(Notice::kMains);
  host.ShowNotification(Notice::kWayDown, WayDownNotification(state_));
  // The UPS must not wait for a disk: that of a computer in trouble may take its time.
  const bool logged = journals_.WriteLog(state_.Text(log_line), OnMedium::kWithSettle);
  const bool recorded = record && journals_.WriteDateRec(*record, OnMedium::kWithSettle);
  seams_.forms.Hide(Form::kMain);
  if (!TellUps()) {
    host.Report("the UPS did not get its shutdown command " + state_.ShutdownCommand);
  }
  if (OnUpsTold) OnUpsTold();
  SettleJournal(journals_.LogPath(), logged);
  if (record) SettleJournal(journals_.DateRecPath(), recorded);
  RunCompanion();
  if (OnEnd) OnEnd();
  host.TakeDown();
}

// A lost port is asked for once more, as every poll would: a dip of the mains makes adapters come
// and go. What hangs on a port that the load could not open is nobody's to speak to.
bool Shutdown::TellUps() {
  SerialPort& port = seams_.ups_port;
  const bool open = port.IsOpen() || (state_.Main.PortWasOpen && port.Open());
  return open && SendCommand(port, state_.ShutdownCommand);
}

void Shutdown::SettleJournal(const std::string& path, bool written) {
  if (!written || !journals_.Settle(path)) {
    seams_.host.Report("the event could not be written to " + path);
  }
}

void Shutdown::RunCompanion() {
  const std::string path = seams_.host.CompanionPath();
  const RunOutcome run = seams_.host.RunHidden(path, kCompanionLimit);
  const std::string who = "the companion " + path;
  switch (run.end) {
    case RunOutcome::End::kNotStarted:
      seams_.host.Report(who + " could not be started: " + run.reason);
      break;
    case RunOutcome::End::kCrashed:
      seams_.host.Report(who + " crashed with signal " + std::to_string(run.status));
      break;
    case RunOutcome::End::kTimedOut:
      seams_.host.Report(who + " did not end in time and was left running");
      break;
    case RunOutcome::End::kExited:
      break;
  }
}

}  // namespace orvane
