#include "app/captions.h"

#include "app/message_numbers.h"

namespace orvane {
namespace {

struct MenuRow {
  Caption Panel::*entry;
  int message;
};

constexpr MenuRow kMenus[] = {
    {&Panel::mnuSystem, 51},   {&Panel::mnuSetup, 52},       {&Panel::mnuOnOrOffBeep, 53},
    {&Panel::mnuExit, 54},     {&Panel::mnuTimer, 55},       {&Panel::mnuWeek, 56},
    {&Panel::mnuSpecial, 57},  {&Panel::mnuTestTimer, 58},   {&Panel::mnuControl, 59},
    {&Panel::mnuTest10S, 60},  {&Panel::mnuTestToLow, 61},   {&Panel::mnuCancelTest, 62},
    {&Panel::mnuShutDown, 63}, {&Panel::mnuHelp, 64},        {&Panel::mnuInternet, 65},
    {&Panel::mnuAbout, 66},    {&Panel::mnuDateAnalyse, 95}, {&Panel::mnuLog, 96},
    {&Panel::mnuShutRec, 97},
};

struct LabelRow {
  Label Panel::*label;
  int message;
};

constexpr LabelRow kStateStrip[] = {
    {&Panel::Label3, 67}, {&Panel::Label4, 70}, {&Panel::Label5, 73},
    {&Panel::Label6, 76}, {&Panel::Label8, 79}, {&Panel::lblConnect, 81},
};

struct ElementRow {
  std::size_t index;
  int message;
};

constexpr ElementRow kDialCaptions[] = {
    {4, 98}, {7, 99}, {5, 100}, {6, 101}, {0, 102}, {1, 103}, {2, 104}, {3, 103},
};

constexpr int kFirstInformationCaption = 89;
constexpr int kFirstBarCaption = 106;

}  // namespace

void SetCaptions(const State& state, Panel& panel) {
  for (const MenuRow& row : kMenus) (panel.*row.entry).Text(state.Message(row.message));
  for (const LabelRow& row : kStateStrip) (panel.*row.label).Caption(state.Message(row.message));
  panel.Frame1.Text(state.Message(88));
  for (std::size_t i = 0; i < panel.Label1.size(); ++i) {
    panel.Label1[i].Caption(state.Message(kFirstInformationCaption + static_cast<int>(i)));
  }
  for (const ElementRow& row : kDialCaptions) {
    panel.Label9[row.index].Caption(state.Message(row.message));
  }
  panel.mnuEmail.Text(state.Message(105));
  for (std::size_t i = 0; i < panel.lblApcCap.size(); ++i) {
    panel.lblApcCap[i].Caption(state.Message(kFirstBarCaption + static_cast<int>(i)));
  }
  panel.picAPC.ToolTipText(state.Message(112));
  panel.Image2.ToolTipText(state.Message(112));
  panel.mnuDateRecord.Text(state.Message(113));
}

std::string PortLine(const State& state, int port) {
  return std::string(state.Message(message::kUpsOnPort)) + std::to_string(port);
}

}  // namespace orvane
