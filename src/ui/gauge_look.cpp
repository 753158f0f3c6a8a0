#include "ui/gauge_look.h"

#include "ui/words.h"

namespace orvane {
namespace {

struct GaugeRow {
  const char* id;
  Words name;
  const char* unit;
  Zone danger;
};

constexpr PerGauge<GaugeRow> kRows = {{{
    {"input", {"输入电压", "Input voltage"}, "V", {}},
    {"output", {"输出电压", "Output voltage"}, "V", {}},
    {"load", {"负载", "Load"}, "%", {100, 150}},
    {"battery", {"电池电量", "Battery level"}, "%", {0, 20}},
    {"frequency", {"输入频率", "Frequency"}, "Hz", {}},
    {"temperature", {"机内温度", "Temperature"}, "℃", {}},
}}};

}  // namespace

QString Id(Gauge gauge) {
  return kRows[gauge].id;
}

Zone DangerZone(Gauge gauge) {
  return kRows[gauge].danger;
}

QString SpokenName(const State& state, Gauge gauge) {
  return Pick(state, kRows[gauge].name);
}

QString Unit(Gauge gauge) {
  return QString::fromUtf8(kRows[gauge].unit);
}

}  // namespace orvane
