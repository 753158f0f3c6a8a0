#include "link/status_evaluation.h"

#include <cstdio>
#include <cstdlib>

#include "app/message_numbers.h"
#include "app/settings.h"

namespace orvane {
namespace {

constexpr int kOverloadPercent = 100;

// Captions of a state line by its bit; a set bit is red, a clear one blue.
void ShowState(const State& state, Label& line, bool set, int set_message, int clear_message) {
  line.Caption(state.Message(set ? set_message : clear_message));
  line.ForeColor(set ? kRed : kBlue);
}

// The digit of slot 9 that asks for a dial. The hundreds are taken by division, the others as
// characters of the slot written with at least three digits, behind the sign if it has one.
bool DialAsked(std::int16_t conditions, int fault) {
  if (fault == kAcFail) return conditions / 100 == 1;
  char digits[16];
  std::snprintf(digits, sizeof digits, "%s%03d", conditions < 0 ? "-" : "", std::abs(conditions));
  return digits[fault - 1] == '1';
}

struct FaultRow {
  int log_message;
  int record_code;
};

constexpr FaultRow kFaults[] = {
    {},
    {message::kAcFail, kRecordAcFail},
    {message::kBatteryLow, kRecordLowOrUpsFail},
    {message::kBatteryLow, kRecordLowOrUpsFail},
};

}  // namespace

void StatusEvaluation::Overload(std::optional<std::int16_t> load) {
  Label& warning = panel_.lblAlert[2];
  if (!load || *load >= kOverloadPercent) {
    warning.Caption(state_.Message(message::kOverloadWarning));
    warning.Visible(true);
  } else {
    warning.Visible(false);
  }
}

void StatusEvaluation::Evaluate(std::string_view bits) {
  Mains(bits[0] == '1');
  Battery(bits[1] == '1');
  Bypass(bits[2] == '1');
  Ups(bits[3] == '1');
  Link();
}

void StatusEvaluation::Mains(bool failed) {
  ShowState(state_, panel_.lblAc, failed, message::kFail, message::kNormal);
  host_.KeepAwake(failed);
  if (failed) {
    React(kAcFail);
    return;
  }
  timers_.Timer2.Enabled(false);
  panel_.Label13.Caption(state_.Message(message::kReady));
  state_.Main.AlertSeconds = 0;
  state_.Main.AlertPeriods = 0;
  state_.Main.EventArmed[kAcFail] = true;
}

void StatusEvaluation::Battery(bool low) {
  ShowState(state_, panel_.lblBatt, low, message::kLow, message::kNormal);
  if (low) {
    React(kBatteryLow);
  } else {
    state_.Main.EventArmed[kBatteryLow] = true;
  }
}

void StatusEvaluation::Bypass(bool active) {
  ShowState(state_, panel_.lblBattIn, active, message::kByPass, message::kOnLine);
}

void StatusEvaluation::Ups(bool failed) {
  ShowState(state_, panel_.lblUps, failed, message::kFail, message::kNormal);
  if (failed) {
    React(kUpsFail);
  } else {
    state_.Main.EventArmed[kUpsFail] = true;
  }
}

// The caption first: its Change event reads the colour of the state that is being left.
void StatusEvaluation::Link() {
  panel_.lblConnect.Caption(state_.Message(message::kConnected));
  panel_.lblConnect.ForeColor(kBlue);
}

void StatusEvaluation::React(int fault) {
  timers_.Timer2.Enabled(true);
  if (DialAsked(state_.Settings[kDialConditions], fault)) {
    state_.Main.DialReason = static_cast<std::uint8_t>(fault);
    timers_.TimerDial.Enabled(true);
  }
  bool& armed = state_.Main.EventArmed[static_cast<std::size_t>(fault)];
  if (!armed) return;
  const FaultRow& row = kFaults[fault];
  // A journal that cannot be written costs its line and nothing else.
  static_cast<void>(journals_.WriteLog(state_.Message(row.log_message)));
  static_cast<void>(journals_.WriteDateRec(row.record_code));
  armed = false;
}

}  // namespace orvane
