#include "shots/shots.h"

#include <QApplication>

#include "shots/boxes.h"
#include "shots/history.h"
#include "shots/main_form.h"
#include "shots/records.h"
#include "shots/settings.h"
#include "ui/look.h"

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
    {"main-dark", BatteryLow, Desktop::kDarkAndLarge},
    {"needles-dark", NeedlesBeyond, Desktop::kDarkAndLarge},
    {"day-dark", DayWithEvents, Desktop::kDarkAndLarge},
    {"history-dark", HistoryOfAWeek, Desktop::kDarkAndLarge},
    {"settings-dark", Setup, Desktop::kDarkAndLarge},
    {"check-dark", CheckWithOpenPoints, Desktop::kDarkAndLarge},
    {"alert-dark", Alert, Desktop::kDarkAndLarge},
    {"week-dark", Week, Desktop::kDarkAndLarge},
};

}  // namespace

std::span<const Shot> Shots() {
  return kShots;
}

// As the platform theme of a desktop does it before the program's own look.
void Use(Desktop desktop) {
  const bool dark = desktop == Desktop::kDarkAndLarge;
  const QColor ground = dark ? QColor(50, 50, 50) : QColor(239, 239, 239);
  QPalette palette(ground, ground);
  palette.setColor(QPalette::WindowText, dark ? Qt::white : Qt::black);
  palette.setColor(QPalette::Base, dark ? QColor(30, 30, 30) : Qt::white);
  QApplication::setPalette(palette);
  QFont font = QApplication::font();
  font.setPixelSize(dark ? 18 : 12);
  QApplication::setFont(font);
  look::Apply(*qApp);
}

}  // namespace orvane::shots
