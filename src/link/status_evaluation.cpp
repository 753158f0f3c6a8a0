#include "link/status_evaluation.h"

#include <cstdio>
#include <iterator>
#include <utility>

#include "app/settings.h"

namespace orvane {
namespace {

constexpr int kOverloadPercent = 100;

// A status bit and its state line: red with one message while the bit is set, blue with the other
// while it is clear.
struct StateColumn {
  Label Panel::*line;
  Message set;
  Message clear;
  std::optional<Fault> fault;  // what a set bit is
};

// In the order of the reply.
constexpr StateColumn kColumns[] = {
    {&Panel::mains, Message::kFail, Message::kNormal, Fault::kMains},
    {&Panel::battery, Message::kLow, Message::kNormal, Fault::kBatteryLow},
    {&Panel::bypass, Message::kBypass, Message::kOnLine, std::nullopt},
    {&Panel::ups, Message::kFail, Message::kNormal, Fault::kUps},
};

// How a fault that appears is logged and recorded.
struct FaultRecord {
  Message log_line;
  RecordCode code;
};

constexpr PerFault<FaultRecord> kRecords = {
    {{{Message::kMainsFailed, RecordCode::kMainsFailed},
      {Message::kBatteryLow, RecordCode::kBatteryLowOrUpsFault},
      {Message::kBatteryLow, RecordCode::kBatteryLowOrUpsFault}}}};

// The digit of slot 9 that asks for a call. The hundreds are taken by division, the others as
// characters of the slot written with at least three digits, behind the sign if it has one.
bool CallAsked(std::int16_t conditions, Fault fault) {
  if (fault == Fault::kMains) return conditions / 100 == 1;
  char digits[16];
  std::snprintf(digits, sizeof digits, "%.3d", conditions);
  return digits[static_cast<std::size_t>(fault)] == '1';
}

}  // namespace

void StatusEvaluation::Overload(std::optional<std::int16_t> load) {
  Label& warning = panel_.overload_warning;
  if (!load || *load >= kOverloadPercent) {
    warning.Caption(state_.Text(Message::kOverloadWarning));
    warning.Visible(true);
  } else {
    warning.Visible(false);
  }
}

void StatusEvaluation::Evaluate(std::string_view bits) {
  for (std::size_t i = 0; i < std::size(kColumns); ++i) {
    const StateColumn& column = kColumns[i];
    const bool set = bits[i] == '1';
    Label& line = panel_.*column.line;
    line.Caption(state_.Text(set ? column.set : column.clear));
    line.ForeColor(set ? kRed : kBlue);
    if (column.fault == Fault::kMains && !set) EndCount();
    if (!column.fault) continue;
    if (set) {
      React(*column.fault);
    } else {
      state_.Main.EventArmed[*column.fault] = true;
    }
  }
  host_.KeepAwake(panel_.mains.ForeColor() == kRed);
  // The caption first: its Change event reads the colour of the state that is being left.
  panel_.link.Caption(state_.Text(Message::kConnected));
  panel_.link.ForeColor(kBlue);
}

// The mains is there. Another fault of the same reply may start the count again.
void StatusEvaluation::EndCount() {
  timers_.countdown_timer.Enabled(false);
  panel_.status_line.Caption(state_.Text(Message::kReady));
  state_.Main.AlertSeconds = 0;
  state_.Main.AlertPeriods = 0;
}

void StatusEvaluation::React(Fault fault) {
  timers_.countdown_timer.Enabled(true);
  if (CallAsked(state_.Settings[kDialConditions], fault)) {
    state_.Main.DialReason = fault;
    timers_.dial_timer.Enabled(true);
  }
  if (!std::exchange(state_.Main.EventArmed[fault], false)) return;
  // A journal that cannot be written costs its line and nothing else.
  static_cast<void>(journals_.WriteLog(state_.Text(kRecords[fault].log_line)));
  static_cast<void>(journals_.WriteDateRec(kRecords[fault].code));
}

}  // namespace orvane
