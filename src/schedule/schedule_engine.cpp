#include "schedule/schedule_engine.h"

#include <algorithm>

#include "app/calendar.h"
#include "link/commands.h"
#include "schedule/due_texts.h"
#include "schedule/schedule_tables.h"

namespace orvane {

void ScheduleEngine::OnSchedule() {
  const LocalTime now = seams_.clock.Now();
  const std::string date = DateText(now);
  const std::string time = TimeForm(now);
  const auto weekday = static_cast<std::size_t>(Weekday(now));
  const auto enabled = [&](std::size_t slot) { return state_.ScheduleEnable[slot] == '1'; };
  const auto is_today = [&](std::size_t slot) {
    return ReadDate(state_.ScheduleDate[slot]) == date;
  };
  const auto is_now = [&](const std::string& text) { return ReadTime(text) == time; };

  bool TestDue = false;
  bool SwitchOnDue = false;
  bool SwitchOffDue = false;
  for (std::size_t n = 1; n <= kScheduleEntries; ++n) {
    const std::size_t slot = n + kSpecialDays.on_slots;
    if (!enabled(slot) || !is_today(n + *kSpecialDays.date_slots)) continue;
    if (is_now(state_.ScheduleOn[slot])) SwitchOnDue = true;
    if (is_now(state_.ScheduleOff[slot])) SwitchOffDue = true;
  }
  for (std::size_t n = 1; n <= kScheduleEntries; ++n) {
    if (!enabled(n) || weekday != n) continue;
    if (is_now(state_.ScheduleOn[n])) SwitchOnDue = true;
    if (is_now(state_.ScheduleOff[n])) SwitchOffDue = true;
  }
  for (std::size_t n = 1; n <= kScheduleEntries; ++n) {
    const std::size_t slot = n + kSelfTests.on_slots;
    if (enabled(slot) && is_today(n + *kSelfTests.date_slots) && is_now(state_.ScheduleOn[slot])) {
      TestDue = true;
    }
  }

  if (TestDue && Send(kSelfTestToLow) && OnSelfTest) OnSelfTest();
  if (SwitchOnDue) SwitchOn();
  if (SwitchOffDue) shutdown_.ShutdownSequence(Message::kSwitchOffTime, RecordCode::kScheduleDown);
}

bool ScheduleEngine::HoldsAnything() const {
  return std::ranges::find(state_.ScheduleEnable, '1') != state_.ScheduleEnable.end();
}

void ScheduleEngine::SwitchOn() {
  if (!journals_.WriteLog(state_.Text(Message::kSwitchOnTime))) {
    seams_.host.Report("the event could not be written to " + journals_.LogPath());
  }
  static_cast<void>(Send(kSwitchOn));
}

bool ScheduleEngine::Send(std::string_view command) {
  const bool sent = SendCommand(seams_.ups_port, command);
  if (!sent) seams_.host.Report("the UPS did not get its command " + std::string(command));
  return sent;
}

}  // namespace orvane
