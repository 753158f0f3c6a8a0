#include "ui/schedule_window.h"

namespace orvane {
namespace {

constexpr std::optional<Words> kNoHead;
constexpr Words kDate{"日  期", "Date"};
constexpr Words kStartUp{"开启UPS", "StartUp"};
constexpr Words kShutDown{"关闭UPS", "ShutDown"};

constexpr std::array<Words, kScheduleEntries> kEventDates = {{{"特别日一", "EventDate1"},
                                                              {"特别日二", "EventDate2"},
                                                              {"特别日三", "EventDate3"},
                                                              {"特别日四", "EventDate4"},
                                                              {"特别日五", "EventDate5"},
                                                              {"特别日六", "EventDate6"},
                                                              {"特别日七", "EventDate7"}}};

}  // namespace

const ScheduleLook& WeekLook() {
  static const ScheduleLook look = {
      "frmWeek",
      Form::frmWeek,
      kWeekly,
      {"一周设定", "WEEK Setting"},
      {{{"星期一", "Mon"},
        {"星期二", "Tues"},
        {"星期三", "Wed"},
        {"星期四", "Thurs"},
        {"星期五", "Fri"},
        {"星期六", "Sat"},
        {"星期日", "Sun"}}},
      Words{"星  期", "WEEK"},
      {{kStartUp, ScheduleEditor::kOn}, {kShutDown, ScheduleEditor::kOff}}};
  return look;
}

const ScheduleLook& SpecialLook() {
  static const ScheduleLook look = {"frmSpecial",
                                    Form::frmSpecial,
                                    kSpecialDays,
                                    {"特别日设定", "Special Setting"},
                                    kEventDates,
                                    kNoHead,
                                    {{kDate, ScheduleEditor::kDate},
                                     {kStartUp, ScheduleEditor::kOn},
                                     {kShutDown, ScheduleEditor::kOff}}};
  return look;
}

const ScheduleLook& SelfTestLook() {
  static const ScheduleLook look = {
      "frmSelfTest",
      Form::frmSelfTest,
      kSelfTests,
      {"UPS自测至低电量设定", "SelfTestToLow Setting"},
      kEventDates,
      kNoHead,
      {{kDate, ScheduleEditor::kDate}, {{"UPS自测时间", "SelfTest Time"}, ScheduleEditor::kOn}}};
  return look;
}

}  // namespace orvane
