#include "ui/schedule_window.h"

namespace orvane {
namespace {

constexpr std::optional<Words> kNoHead;
const ScheduleColumn kDate{"date", {"日  期", "Date"}, &ScheduleEditor::Row::date};
const ScheduleColumn kSwitchOn{"on", {"开启UPS", "StartUp"}, &ScheduleEditor::Row::on};
const ScheduleColumn kSwitchOff{"off", {"关闭UPS", "ShutDown"}, &ScheduleEditor::Row::off};
const ScheduleColumn kTestTime{"on", {"UPS自测时间", "SelfTest Time"}, &ScheduleEditor::Row::on};

constexpr std::array<Words, kScheduleEntries> kEventDates = {{{"特别日一", "EventDate1"},
                                                              {"特别日二", "EventDate2"},
                                                              {"特别日三", "EventDate3"},
                                                              {"特别日四", "EventDate4"},
                                                              {"特别日五", "EventDate5"},
                                                              {"特别日六", "EventDate6"},
                                                              {"特别日七", "EventDate7"}}};

}  // namespace

const ScheduleLook& WeekLook() {
  static const ScheduleLook look = {"week",
                                    Form::kWeek,
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
                                    {kSwitchOn, kSwitchOff}};
  return look;
}

const ScheduleLook& SpecialLook() {
  static const ScheduleLook look = {"special_days",
                                    Form::kSpecialDays,
                                    kSpecialDays,
                                    {"特别日设定", "Special Setting"},
                                    kEventDates,
                                    kNoHead,
                                    {kDate, kSwitchOn, kSwitchOff}};
  return look;
}

const ScheduleLook& SelfTestLook() {
  static const ScheduleLook look = {
      "self_tests",      Form::kSelfTests,
      kSelfTests,        {"UPS自测至低电量设定", "SelfTestToLow Setting"},
      kEventDates,       kNoHead,
      {kDate, kTestTime}};
  return look;
}

}  // namespace orvane
