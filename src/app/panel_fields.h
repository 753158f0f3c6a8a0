// The fields of the panel by name, for whoever carries them elsewhere.
#pragma once

#include <string>

#include "app/panel.h"

namespace orvane {

inline constexpr const char* kGaugeNames[] = {"input",   "output",    "load",
                                              "battery", "frequency", "temperature"};
inline constexpr const char* kUpsDatumNames[] = {"battery_count", "model",       "version",
                                                 "rated_voltage", "rated_power", "battery_voltage"};

// Calls `visit` with the name of each field and the field itself.
template <class Visit>
void ForEachField(Panel& panel, const Visit& visit) {
  visit("mains_caption", panel.mains_caption);
  visit("mains", panel.mains);
  visit("battery_caption", panel.battery_caption);
  visit("battery", panel.battery);
  visit("bypass_caption", panel.bypass_caption);
  visit("bypass", panel.bypass);
  visit("ups_caption", panel.ups_caption);
  visit("ups", panel.ups);
  visit("link_caption", panel.link_caption);
  visit("link", panel.link);
  for (const Gauge gauge : kGauges) {
    const std::string dot = std::string(".") + kGaugeNames[static_cast<std::size_t>(gauge)];
    visit("read_out" + dot, panel.read_outs[gauge]);
    visit("bar_figure" + dot, panel.bar_figures[gauge]);
    visit("bar" + dot, panel.bars[gauge]);
    visit("needle" + dot, panel.needles[gauge]);
    visit("dial_caption" + dot, panel.dial_captions[gauge]);
    visit("bar_caption" + dot, panel.bar_captions[gauge]);
  }
  visit("input_unit", panel.input_unit);
  visit("output_unit", panel.output_unit);
  visit("bar_face", panel.bar_face);
  visit("dial_face", panel.dial_face);
  visit("information_heading", panel.information_heading);
  for (const UpsDatum datum : kUpsData) {
    const std::string dot = std::string(".") + kUpsDatumNames[static_cast<std::size_t>(datum)];
    visit("information_caption" + dot, panel.information_captions[datum]);
    visit("information" + dot, panel.information[datum]);
  }
  visit("supply_warning", panel.supply_warning);
  visit("overload_warning", panel.overload_warning);
  visit("status_line", panel.status_line);
  visit("port_line", panel.port_line);
  visit("clock", panel.clock);
  visit("shield", panel.shield);
  visit("tray", panel.tray);
  visit("system_menu", panel.system_menu);
  visit("settings_entry", panel.settings_entry);
  visit("beeper_entry", panel.beeper_entry);
  visit("exit_entry", panel.exit_entry);
  visit("schedule_menu", panel.schedule_menu);
  visit("week_entry", panel.week_entry);
  visit("special_days_entry", panel.special_days_entry);
  visit("self_tests_entry", panel.self_tests_entry);
  visit("analysis_menu", panel.analysis_menu);
  visit("log_entry", panel.log_entry);
  visit("day_history_entry", panel.day_history_entry);
  visit("history_entry", panel.history_entry);
  visit("shutdown_report_entry", panel.shutdown_report_entry);
  visit("control_menu", panel.control_menu);
  visit("short_test_entry", panel.short_test_entry);
  visit("test_to_low_entry", panel.test_to_low_entry);
  visit("cancel_test_entry", panel.cancel_test_entry);
  visit("shutdown_entry", panel.shutdown_entry);
  visit("check_entry", panel.check_entry);
  visit("help_menu", panel.help_menu);
  visit("about_entry", panel.about_entry);
}

}  // namespace orvane
