#include "protect/shutdown.h"

#include <chrono>

#include "app/message_numbers.h"
#include "link/commands.h"

namespace orvane {
namespace {

constexpr std::chrono::milliseconds kCompanionLimit{40000};

}  // namespace

void Shutdown::ShutdownSequence(int log_message, std::optional<int> record_code) {
  if (begun_) return;
  begun_ = true;
  Host& host = seams_.host;
  seams_.forms.Dismiss();
  seams_.forms.Unload(Form::frmAlert);
  seams_.forms.Unload(Form::frmSetup);
  seams_.timers.Stop();
  // A reply that is still under way would start the count again.
  seams_.MSComm1.RThreshold(0);
  panel_.Label13.Caption(state_.Message(message::kSavingFiles));
  // The UPS must not wait for a disk: that of a computer in trouble may take its time.
  const bool logged = journals_.WriteLog(state_.Message(log_message), OnMedium::kWithSettle);
  const bool recorded = record_code && journals_.WriteDateRec(*record_code, OnMedium::kWithSettle);
  seams_.forms.Hide(Form::frmMain);
  if (!TellUps()) {
    host.Report("the UPS did not get its shutdown command " + state_.ShutdownCommand);
  }
  SettleJournal(journals_.LogPath(), logged);
  if (record_code) SettleJournal(journals_.DateRecPath(), recorded);
  RunCompanion();
  host.TakeDown();
}

// A lost port is asked for once more, as every poll would: a dip of the mains makes adapters come
// and go. What hangs on a port that the load could not open is nobody's to speak to.
bool Shutdown::TellUps() {
  SerialPort& port = seams_.MSComm1;
  const bool open = port.PortOpen() || (state_.Main.PortWasOpen && port.PortOpen(true));
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
