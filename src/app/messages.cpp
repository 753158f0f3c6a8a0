#include "app/messages.h"

#include <iterator>

namespace orvane {
namespace {

struct Row {
  Message message;
  std::string_view english;
  std::string_view chinese;
};

// In the order of Message.
// clang-format off
constexpr Row kRows[] = {
    {Message::kModemPortInvalid, "Modem can't use appointed COM port.", "调制解调器COM口无效!请先设置串行口"},
    {Message::kBusy, "Busy", "线路忙,稍候再拨"},
    {Message::kRinging, "Succeed", "拨号成功,稍侯挂机"},
    {Message::kHangUp, "Hang up", "挂机"},
    {Message::kVoidNumber, "This's void phonecode", "这是空号"},
    {Message::kNoDialTone, "No dialing tone,please connect phone line", "无拨号音,请将电话线连好"},
    {Message::kNoModem, "Can not dail,please check Modem line", "无法拨号,请检查Modem连线"},
    {Message::kDialTimes, "dialling times:", "拨号次数:"},
    {Message::kCallSucceeded, "Succeed", "拨号成功"},
    {Message::kGiveUpDialling, "Give up dialing", "放弃拨号"},
    {Message::kProgramStart, "Program start", "本程式启动"},
    {Message::kUpsOnPort, "UPS Install on:Com", "UPS安装在：COM"},
    {Message::kNoPortBox, "None com port can be use", "没有可用的通信串行口！"},
    {Message::kWarning, "Warning", "警告"},
    {Message::kNoPortLine, "The com port is invalidate!", "通信端口无效"},
    {Message::kFixedPortBox, "The appointed COM port is invalidate!", "所选的通信口不可用！请重新设置。"},
    {Message::kFixedPortLine, "The port is invalidate", "所选通信端口无效"},
    {Message::kProgramEnd, "Program end", "本程式退出"},
    {Message::kSettingsNotSaved, "The settings could not be saved to disk. They hold until the program ends.", "设置无法保存到磁盘，仅在本次运行期间有效。"},
    {Message::kAskShutdown, "Are you sure to shutdown?", "是否真要退出系统并关闭计算机和UPS？"},
    {Message::kSavingFiles, "Saving files and exit windows...", "正在保存文件和退出WINDOWS..."},
    {Message::kShutdownByMenu, "Shutdown by menu", "用菜单关闭了系统"},
    {Message::kSecondsLeftBefore, "System Will shutdown after", "警告：系统将在"},
    {Message::kSecondsLeftBehind, "Seconds", "秒后关闭！"},
    {Message::kCountdownEnded, "System shutdown", "系统为了保护UPS,自动关闭"},
    {Message::kSwitchOnTime, "It's time startup ups", "定时开机的时间到了"},
    {Message::kSwitchOffTime, "It's time shutdown ups", "定时关机的时间到了"},
    {Message::kOverloadWarning, "Warning!Overload!Ups and loads shall be spoiling.", "警告：负载太大，有可能损坏UPS及同一电网上的其它负载！"},
    {Message::kFail, "Fail", "失 效"},
    {Message::kMainsFailed, "AC fail", "市电失效"},
    {Message::kNormal, "Normal", "正 常"},
    {Message::kReady, "Ready", "就绪"},
    {Message::kLow, "Low", "欠 压"},
    {Message::kBatteryLow, "Batt. Low", "电池欠压"},
    {Message::kBypass, "By Pass", "旁 路"},
    {Message::kOnLine, "On Line", "在 线"},
    {Message::kConnected, "Conn", "已连接"},
    {Message::kNotConnected, "No conn", "未连接"},
    {Message::kBypassWarning, "Warning!Ups is by pass,the loads can't be protected.", "警告：UPS 处于旁路状态，负载不受保护！"},
    {Message::kMainsWarning, "Warning!AC fail!Remove Ups and loads before startup dynamo.", "警告:市电中断.启动发电机前请先将UPS及设备从电网中去除,启动发电机1分钟后再开机工作."},
    {Message::kAskClearLog, "Are you sure to clear Log file?", "确实要清空事件记录？"},
    {Message::kCopyright, "Copyright (C) 2026 the Orvane developers", "版权所有 (C) 2026 Orvane 开发者"},
    {Message::kSystemMenu, "&System", "系统(&S)"},
    {Message::kSettingsEntry, "&Configure", "系统设置(&C)"},
    {Message::kBeeperEntry, "Toggle &Beep", "蜂鸣声开/关(&B)"},
    {Message::kExitEntry, "&Exit", "离开Orvane(&E)"},
    {Message::kScheduleMenu, "Sche&Dule", "定时设定(&D)"},
    {Message::kWeekEntry, "&Weekly setting", "一周设定(&W)"},
    {Message::kSpecialDaysEntry, "&Special setting", "特别日设定(&S)"},
    {Message::kSelfTestsEntry, "&UPS SelfTestToLow setting", "UPS自测至低电量设定(&U)"},
    {Message::kAnalysisMenu, "A&Nalysis", "数据分析(&N)"},
    {Message::kLogEntry, "&Log File", "事件记录(&L)"},
    {Message::kDayHistoryEntry, "Event &Day", "日历史记录(&D)"},
    {Message::kHistoryEntry, "&History", "历史曲线(&H)"},
    {Message::kShutdownReportEntry, "&Shutdown Info", "关闭系统记录(&S)"},
    {Message::kControlMenu, "&Control", "控制(&C)"},
    {Message::kShortTestEntry, "&UPS Selftest 10 sec.", "UPS自我测试10秒钟(&U)"},
    {Message::kTestToLowEntry, "UPS Selftest till Batt. &Low", "UPS自我测试直至低电量(&L)"},
    {Message::kCancelTestEntry, "&Cancel UPS Selftest", "取消UPS自我测试(&C)"},
    {Message::kShutdownEntry, "&ShutDown...", "关闭系统(&S)..."},
    {Message::kHelpMenu, "&About", "关于(&A)"},
    {Message::kAboutEntry, "&About...", "关于(&A)..."},
    {Message::kMainsCaption, "AC:", "市电:"},
    {Message::kBatteryCaption, "Batt:", "电池:"},
    {Message::kBypassCaption, "BattConn", "电池接入:"},
    {Message::kUpsCaption, "UPS:", "UPS:"},
    {Message::kLinkCaption, "Conn:", "连接:"},
    {Message::kNoLinkYet, "No Conn", "未连接"},
    {Message::kInformationHeading, "UPS Information", "UPS基本信息"},
    {Message::kBatteryCountCaption, "Batt Num:", "电池数量:"},
    {Message::kModelCaption, "UPS Model:", "机    型:"},
    {Message::kVersionCaption, "Version:", "版    本:"},
    {Message::kRatedVoltageCaption, "Rating Volt:", "额定电压:"},
    {Message::kRatedPowerCaption, "Rating Power:", "额定功率:"},
    {Message::kBatteryVoltageCaption, "Batt Volt:", "额定电池压:"},
    {Message::kInputDial, "Input", "输入"},
    {Message::kOutputDial, "Output", "输出"},
    {Message::kLoadDial, "Load(%)", "负载(%)"},
    {Message::kBatteryDial, "Batt(%)", "电池(%)"},
    {Message::kFrequencyDial, "Freq.", "频率"},
    {Message::kTemperatureDial, "Temp.", "温度"},
    {Message::kVoltsDial, "(V)", "电压(V)"},
    {Message::kInputBar, "Input", "输入电压"},
    {Message::kOutputBar, "Output", "输出电压"},
    {Message::kLoadBar, "Load", "工作负载"},
    {Message::kBatteryBar, "Batt.", "电    池"},
    {Message::kFrequencyBar, "Freq.", "输入频率"},
    {Message::kTemperatureBar, "Temp.", "机内温度"},
    {Message::kFaceToolTip, "Dbl_Click To Switch Interface", "双击鼠标可以切换界面"},
    {Message::kDayHistoryTitle, "Even Day", "日历史记录分析"},
    {Message::kDateCaption, "Date:", "日期:"},
    {Message::kPreviousDay, "Prev", "上一天"},
    {Message::kNextDay, "Next", "下一天"},
    {Message::kCancel, "Cancel", "取消"},
    {Message::kScheduleLegend, "= Schedule Down", "= 定时关机"},
    {Message::kMainsLegend, "= AC Fail", "= 市电中断"},
    {Message::kBatteryLegend, "= UPS Batt. Low", "= UPS低电位"},
    {Message::kMainsFailedTitle, "Mains failure", "市电中断"},
    {Message::kGoesDownBefore, "The computer goes down at ", "计算机将于 "},
    {Message::kGoesDownBehind, ".", " 关闭。"},
    {Message::kCountStandsStill, "The countdown stands still until the UPS answers.", "UPS 恢复应答之前，倒计时暂停。"},
    {Message::kMainsBackTitle, "The mains is back", "市电已恢复"},
    {Message::kMainsBackBody, "The countdown has ended.", "倒计时已取消。"},
    {Message::kBatteryLowTitle, "Battery low", "电池欠压"},
    {Message::kBatteryLowBody, "The UPS reports that its battery is low.", "UPS 报告电池欠压。"},
    {Message::kUpsFaultTitle, "UPS fault", "UPS 故障"},
    {Message::kUpsFaultBody, "The UPS reports a fault of its own.", "UPS 报告自身故障。"},
    {Message::kSilentTitle, "No answer from the UPS", "UPS 没有应答"},
    {Message::kSilentBody, "A mains failure is not noticed until it answers.", "恢复应答之前，无法发觉市电中断。"},
    {Message::kWayDownTitle, "The computer goes down now", "计算机正在关闭"},
    {Message::kWayDownBody, "The applications are asked to save and close.", "正在要求各应用程序保存并退出。"},
};
// clang-format on

constexpr bool InOrder() {
  for (std::size_t i = 0; i < std::size(kRows); ++i) {
    if (kRows[i].message != static_cast<Message>(i)) return false;
  }
  return true;
}
static_assert(std::size(kRows) == kMessages && InOrder());

}  // namespace

std::string_view MessageText(Message message, Language language) {
  const Row& row = kRows[static_cast<std::size_t>(message)];
  return language == Language::kEnglish ? row.english : row.chinese;
}

}  // namespace orvane
