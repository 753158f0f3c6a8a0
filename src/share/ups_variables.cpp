#include "share/ups_variables.h"

#include <optional>

#include "app/settings.h"
#include "link/battery_scale.h"
#include "link/numbers.h"
#include "platform/text.h"

namespace orvane {
namespace {

struct Source {
  const Panel& panel;
  const State& state;
  bool live;  // the link is there
  bool going_down;
};

// The field of data that the UPS has not told yet.
constexpr std::string_view kUnknown = "UnKnown";

constexpr int kShortestDelay = 30;
constexpr int kSecondsPerMinute = 60;
constexpr float kVoltsPerCell = 2;

bool IsRed(const Label& label) {
  return label.ForeColor() == kRed;
}

// A word of ups.status, and when it stands there. The first one tells others to go down; they are
// told also while the UPS is silent.
struct StatusWord {
  std::string_view word;
  bool (*stands)(const Source&);
};

constexpr StatusWord kStatusWords[] = {
    {"FSD", [](const Source& s) { return s.going_down; }},
    {"ALARM", [](const Source& s) { return s.live && IsRed(s.panel.ups); }},
    {"OL", [](const Source& s) { return s.live && !IsRed(s.panel.mains); }},
    {"OB", [](const Source& s) { return s.live && IsRed(s.panel.mains); }},
    {"LB", [](const Source& s) { return s.live && IsRed(s.panel.battery); }},
    {"BYPASS", [](const Source& s) { return s.live && IsRed(s.panel.bypass); }},
    {"OVER", [](const Source& s) { return s.live && s.panel.overload_warning.Visible(); }},
    {"TEST", [](const Source& s) { return s.live && s.state.Main.Data.test_bit == '1'; }},
};

std::string Status(const Source& source) {
  std::string status;
  for (const StatusWord& row : kStatusWords) {
    if (!row.stands(source)) continue;
    if (!status.empty()) status += ' ';
    status += row.word;
  }
  return status;
}

std::string Alarm(const Source& source) {
  return source.live && IsRed(source.panel.ups) ? "UPS fault" : "";
}

template <Gauge kGauge>
std::string ReadOut(const Source& source) {
  return source.live ? source.panel.read_outs[kGauge].Caption() : "";
}

template <UpsDatum kDatum>
std::string Datum(const Source& source) {
  const std::string_view text = Trimmed(source.panel.information[kDatum].Caption());
  return text == kUnknown ? "" : std::string(text);
}

// A rated value without its unit, where it has that one.
std::string Rating(const Source& source, UpsDatum datum, std::string_view unit) {
  std::string_view text = source.panel.information[datum].Caption();
  if (!text.ends_with(unit)) return "";
  text = Trimmed(text.substr(0, text.size() - unit.size()));
  const auto value = ReadNumber(text);
  return value && *value > 0 ? std::string(text) : "";
}

// Volts of the whole battery. Where the UPS tells those of a cell, the battery's nominal voltage
// says how many of them there are.
std::string BatteryVoltage(const Source& source) {
  const UpsData& data = source.state.Main.Data;
  if (!source.live || !data.battery_figure) return "";
  const float figure = *data.battery_figure;
  if (IsWholeBattery(figure)) return std::string(NumberText(figure));
  const auto nominal =
      source.state.BatteryVoltage ? source.state.BatteryVoltage : data.rated_battery;
  return nominal ? std::string(NumberText(figure * *nominal / kVoltsPerCell)) : "";
}

std::string Beeper(const Source& source) {
  const char bit = source.state.Main.Data.beeper_bit;
  if (!source.live) return "";
  return bit == '1' ? "enabled" : bit == '0' ? "disabled" : "";
}

std::string ShutdownDelay(const Source& source) {
  const int minutes = source.state.Settings[kShutdownDelay];
  if (minutes < 0) return "";
  return std::to_string(minutes == 0 ? kShortestDelay : minutes * kSecondsPerMinute);
}

struct Row {
  std::string_view name;
  std::string (*value)(const Source&);
};

constexpr Row kRows[] = {
    {"device.type", [](const Source&) { return std::string("ups"); }},
    {"device.mfr", [](const Source& s) { return s.state.Main.Data.company; }},
    {"device.model", Datum<UpsDatum::kModel>},
    {"driver.name", [](const Source&) { return std::string("orvane"); }},
    {"driver.version", [](const Source&) { return std::string(ORVANE_VERSION); }},
    {"ups.mfr", [](const Source& s) { return s.state.Main.Data.company; }},
    {"ups.model", Datum<UpsDatum::kModel>},
    {"ups.firmware", Datum<UpsDatum::kVersion>},
    {"input.voltage", ReadOut<Gauge::kInput>},
    {"input.frequency", ReadOut<Gauge::kFrequency>},
    {"output.voltage", ReadOut<Gauge::kOutput>},
    {"output.voltage.nominal",
     [](const Source& s) { return Rating(s, UpsDatum::kRatedVoltage, "V"); }},
    {"ups.load", ReadOut<Gauge::kLoad>},
    {"ups.realpower.nominal",
     [](const Source& s) { return Rating(s, UpsDatum::kRatedPower, "W"); }},
    {"ups.power.nominal", [](const Source& s) { return Rating(s, UpsDatum::kRatedPower, "VA"); }},
    {"battery.charge", ReadOut<Gauge::kBattery>},
    {"battery.voltage", BatteryVoltage},
    {"battery.voltage.nominal",
     [](const Source& s) { return Rating(s, UpsDatum::kBatteryVoltage, "V"); }},
    {"ups.temperature", ReadOut<Gauge::kTemperature>},
    {"ups.delay.shutdown", ShutdownDelay},
    {"ups.beeper.status", Beeper},
    {"ups.alarm", Alarm},
    {"ups.status", Status},
};

}  // namespace

UpsVariables DescribeUps(const Panel& panel, const State& state, bool going_down) {
  const Source source{panel, state, panel.link.ForeColor() == kBlue, going_down};
  UpsVariables variables;
  variables.stale = !source.live && !going_down;
  for (const Row& row : kRows) variables.list.push_back({row.name, row.value(source)});
  return variables;
}

std::string_view ValueOf(const UpsVariables& variables, std::string_view name) {
  for (const UpsVariable& variable : variables.list) {
    if (variable.name == name) return variable.value;
  }
  return "";
}

}  // namespace orvane
