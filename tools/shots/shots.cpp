#include "shots/shots.h"

#include "shots/boxes.h"
#include "shots/history.h"
#include "shots/main_form.h"
#include "shots/records.h"
#include "shots/settings.h"

namespace orvane::shots {
namespace {

// One row for each picture; a window's maker stands in a file of its own beside this one.
constexpr Shot kShots[] = {
    {"main-normal", Normal},
    {"main-start", BeforeFirstReply},
    {"main-mains-failed", MainsFailed},
    {"main-battery-low", BatteryLow},
    {"main-bypass", Bypass},
    {"main-overload", Overload},
    {"main-everything", Everything},
    {"main-link-lost", LinkLost},
    {"needles-normal", Needles},
    {"needles-beyond", NeedlesBeyond},
    {"splash", Splash},
    {"about", About},
    {"alert", Alert},
    {"day", DayWithEvents},
    {"day-many", DayOfManyEvents},
    {"log", LogOfEvents},
    {"log-none", LogWithoutFile},
    {"history", HistoryOfAWeek},
    {"history-none", HistoryWithoutSamples},
    {"shutdown-report", ShutdownReport},
    {"settings", Setup},
    {"settings-nothing-chosen", SetupWithoutFile},
    {"check", CheckReady},
    {"check-open", CheckWithOpenPoints},
    {"week", Week},
    {"special-days", Special},
    {"self-tests", SelfTest},
};

}  // namespace

std::span<const Shot> Shots() {
  return kShots;
}

}  // namespace orvane::shots
