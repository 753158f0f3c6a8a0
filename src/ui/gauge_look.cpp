#include "ui/gauge_look.h"

#include "ui/words.h"

namespace orvane {
namespace {

struct GaugeRow {
  Words name;
  const char* unit;
  Zone danger;
};

// In the order of Label2.
constexpr GaugeRow kGaugeRows[kGauges] = {
    {{"输入电压", "Input voltage"}, "V", {}}, {{"输出电压", "Output voltage"}, "V", {}},
    {{"负载", "Load"}, "%", {100, 150}},      {{"电池电量", "Battery level"}, "%", {0, 20}},
    {{"输入频率", "Frequency"}, "Hz", {}},    {{"机内温度", "Temperature"}, "℃", {}},
};

}  // namespace

Zone DangerZone(std::size_t index) {
  return kGaugeRows[index].danger;
}

QString SpokenName(const State& state, std::size_t index) {
  return Pick(state, kGaugeRows[index].name);
}

QString Unit(std::size_t index) {
  return QString::fromUtf8(kGaugeRows[index].unit);
}

}  // namespace orvane
