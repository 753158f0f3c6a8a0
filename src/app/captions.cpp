#include "app/captions.h"

namespace orvane {
namespace {

struct MenuRow {
  Caption Panel::*entry;
  Message message;
};

constexpr MenuRow kMenus[] = {
    {&Panel::system_menu, Message::kSystemMenu},
    {&Panel::settings_entry, Message::kSettingsEntry},
    {&Panel::beeper_entry, Message::kBeeperEntry},
    {&Panel::exit_entry, Message::kExitEntry},
    {&Panel::schedule_menu, Message::kScheduleMenu},
    {&Panel::week_entry, Message::kWeekEntry},
    {&Panel::special_days_entry, Message::kSpecialDaysEntry},
    {&Panel::self_tests_entry, Message::kSelfTestsEntry},
    {&Panel::analysis_menu, Message::kAnalysisMenu},
    {&Panel::log_entry, Message::kLogEntry},
    {&Panel::day_history_entry, Message::kDayHistoryEntry},
    {&Panel::history_entry, Message::kHistoryEntry},
    {&Panel::shutdown_report_entry, Message::kShutdownReportEntry},
    {&Panel::control_menu, Message::kControlMenu},
    {&Panel::short_test_entry, Message::kShortTestEntry},
    {&Panel::test_to_low_entry, Message::kTestToLowEntry},
    {&Panel::cancel_test_entry, Message::kCancelTestEntry},
    {&Panel::shutdown_entry, Message::kShutdownEntry},
    {&Panel::check_entry, Message::kCheckEntry},
    {&Panel::help_menu, Message::kHelpMenu},
    {&Panel::about_entry, Message::kAboutEntry},
};

struct LabelRow {
  Label Panel::*label;
  Message message;
};

constexpr LabelRow kLabels[] = {
    {&Panel::mains_caption, Message::kMainsCaption},
    {&Panel::battery_caption, Message::kBatteryCaption},
    {&Panel::bypass_caption, Message::kBypassCaption},
    {&Panel::ups_caption, Message::kUpsCaption},
    {&Panel::link_caption, Message::kLinkCaption},
    {&Panel::link, Message::kNoLinkYet},
    {&Panel::input_unit, Message::kVoltsDial},
    {&Panel::output_unit, Message::kVoltsDial},
};

struct GaugeRow {
  Gauge gauge;
  Message dial;
  Message bar;
};

constexpr GaugeRow kGaugeRows[] = {
    {Gauge::kInput, Message::kInputDial, Message::kInputBar},
    {Gauge::kOutput, Message::kOutputDial, Message::kOutputBar},
    {Gauge::kLoad, Message::kLoadDial, Message::kLoadBar},
    {Gauge::kBattery, Message::kBatteryDial, Message::kBatteryBar},
    {Gauge::kFrequency, Message::kFrequencyDial, Message::kFrequencyBar},
    {Gauge::kTemperature, Message::kTemperatureDial, Message::kTemperatureBar},
};

struct DatumRow {
  UpsDatum datum;
  Message caption;
};

constexpr DatumRow kDatumRows[] = {
    {UpsDatum::kBatteryCount, Message::kBatteryCountCaption},
    {UpsDatum::kModel, Message::kModelCaption},
    {UpsDatum::kVersion, Message::kVersionCaption},
    {UpsDatum::kRatedVoltage, Message::kRatedVoltageCaption},
    {UpsDatum::kRatedPower, Message::kRatedPowerCaption},
    {UpsDatum::kBatteryVoltage, Message::kBatteryVoltageCaption},
};

}  // namespace

void SetCaptions(const State& state, Panel& panel) {
  for (const MenuRow& row : kMenus) (panel.*row.entry).Text(state.Text(row.message));
  for (const LabelRow& row : kLabels) (panel.*row.label).Caption(state.Text(row.message));
  for (const GaugeRow& row : kGaugeRows) {
    panel.dial_captions[row.gauge].Caption(state.Text(row.dial));
    panel.bar_captions[row.gauge].Caption(state.Text(row.bar));
  }
  panel.information_heading.Text(state.Text(Message::kInformationHeading));
  for (const DatumRow& row : kDatumRows) {
    panel.information_captions[row.datum].Caption(state.Text(row.caption));
  }
  for (Face* face : {&panel.bar_face, &panel.dial_face}) {
    face->ToolTipText(state.Text(Message::kFaceToolTip));
  }
}

std::string PortLine(const State& state, int port) {
  return std::string(state.Text(Message::kUpsOnPort)) + std::to_string(port);
}

}  // namespace orvane
