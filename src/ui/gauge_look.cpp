#include "ui/gauge_look.h"

#include "ui/words.h"

namespace orvane {
namespace {

struct GaugeRow {
  Words name;
  Zone danger;
};

constexpr GaugeRow kGaugeRows[kGauges] = {
    {{"输入电压", "Input voltage"}, {}}, {{"输出电压", "Output voltage"}, {}},
    {{"负载", "Load"}, {100, 150}},      {{"电池电量", "Battery level"}, {0, 20}},
    {{"输入频率", "Frequency"}, {}},     {{"机内温度", "Temperature"}, {}},
};

}  // namespace

Zone DangerZone(std::size_t index) {
  return kGaugeRows[index].danger;
}

QString SpokenName(const State& state, std::size_t index) {
  return Pick(state, kGaugeRows[index].name);
}

}  // namespace orvane
