#include "shots/settings.h"

#include "ui/check_window.h"
#include "ui/schedule_window.h"
#include "ui/settings_window.h"

namespace orvane::shots {
namespace {

// One slip in each section.
constexpr const char* kSchedule = R"([weekly]
1Enable=1
1On=8:00
1Off=18:30
2Enable=1
2On=08:00
2Off=6:60 PM
3Enable=1
3On=8:00 AM
3Off=6:30 PM
6On=9:00
6Off=13:00
[Special]
1Enable=1
1Date=2026-05-01
1On=10:00
1Off=12:00
2Enable=1
2Date=2026-02-30
2On=10:00
2Off=12:00
[SelfTestToLow]
1Enable=1
1Date=2026-04-06
1On=3:00
2Date=2026-10-05
2On=3
)";

std::unique_ptr<QWidget> Schedule(Stage& stage, const ScheduleLook& look) {
  stage.Start();
  stage.disk.files["/prog/systimer.ini"] = kSchedule;
  return std::make_unique<ScheduleWindow>(look, stage.state, stage.form, stage.forms);
}

std::unique_ptr<QWidget> Settings(Stage& stage) {
  stage.Start();
  return std::make_unique<SettingsWindow>(stage.form, stage.forms, stage.dialogs);
}

}  // namespace

std::unique_ptr<QWidget> Setup(Stage& stage) {
  std::string& line = stage.disk.files["/prog/Orvane.ini"];
  line = "2,30,0,5,0,2,30,1,3,110,\"0,119\"" + line.substr(line.rfind(','));
  return Settings(stage);
}

std::unique_ptr<QWidget> SetupWithoutFile(Stage& stage) {
  std::string& line = stage.disk.files["/prog/Orvane.ini"];
  line = "0,0,0,0,0,0,0,11,0,0,\"\"" + line.substr(line.rfind(','));
  return Settings(stage);
}

std::unique_ptr<QWidget> CheckReady(Stage& stage) {
  stage.Start();
  stage.Polls(3);
  return std::make_unique<CheckWindow>(stage.form);
}

std::unique_ptr<QWidget> CheckWithOpenPoints(Stage& stage) {
  std::string& line = stage.disk.files["/prog/Orvane.ini"];
  line = "1,0,0,0,0,2,30,1,3,0,\"\"" + line.substr(line.rfind(','));
  stage.silent = true;
  stage.inspector.found.rights = {Right::kPassword, Right::kBlocked};
  stage.inspector.found.blockers = "PackageKit (Updating packages, process 812)";
  stage.inspector.found.others->acting = {"upsmon"};
  stage.inspector.found.autostart = Autostart::kOff;
  stage.inspector.found.companion = CompanionFound{false, "", "No such file or directory"};
  stage.inspector.last.none = true;
  stage.Start();
  stage.Polls(5);
  return std::make_unique<CheckWindow>(stage.form);
}

std::unique_ptr<QWidget> Week(Stage& stage) {
  return Schedule(stage, WeekLook());
}

std::unique_ptr<QWidget> Special(Stage& stage) {
  return Schedule(stage, SpecialLook());
}

std::unique_ptr<QWidget> SelfTest(Stage& stage) {
  return Schedule(stage, SelfTestLook());
}

}  // namespace orvane::shots
