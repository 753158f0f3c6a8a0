#include "shots/records.h"

#include <QItemSelectionModel>
#include <QTimer>
#include <string>

#include "app/calendar.h"
#include "ui/day_history_window.h"
#include "ui/log_window.h"
#include "ui/long_list.h"
#include "ui/shutdown_report_window.h"

namespace orvane::shots {
namespace {

constexpr const char* kReport =
    "[Main]\r\nShowMsg=1\r\nAppNumber=3\r\nApp0=Editor\r\nApp1=Sheet\r\nApp2=Player\r\n"
    "[Editor]\r\nTitle=信件.txt - Editor\r\nFileNumber=3\r\n"
    "File0=/home/user/Documents/信件.txt\r\nFile1=/home/user/Documents/notes.txt\r\n"
    "File2=/home/user/Documents/a long way down/to a file with a rather long name.txt\r\n"
    "[Sheet]\r\nTitle=Budget 2001 - Sheet\r\nFileNumber=1\r\nFile0=/home/user/budget.csv\r\n"
    "[Player]\r\nTitle=Player\r\nFileNumber=0\r\n";

// `count` records of one hour of the day on which the pictures are taken.
void Record(Stage& stage, int hour, RecordCode code, int count) {
  const LocalTime now = stage.time.Now();
  stage.time.SetWall({now.year, now.month, now.day, hour, 0, 0});
  while (count-- > 0) stage.journals.WriteDateRec(code);
  stage.time.SetWall(now);
}

std::unique_ptr<QWidget> Day(Stage& stage) {
  return std::make_unique<DayHistoryWindow>(stage.state, stage.disk, stage.time,
                                            stage.journals.DateRecPath());
}

std::unique_ptr<QWidget> Log(Stage& stage) {
  return std::make_unique<LogWindow>(stage.state, stage.disk, stage.dialogs,
                                     stage.journals.LogPath());
}

}  // namespace

std::unique_ptr<QWidget> DayWithEvents(Stage& stage) {
  stage.Start();
  Record(stage, 0, RecordCode::kScheduleDown, 1);
  Record(stage, 9, RecordCode::kMainsFailed, 1);
  Record(stage, 14, RecordCode::kMainsFailed, 3);
  Record(stage, 14, RecordCode::kBatteryLowOrUpsFault, 1);
  Record(stage, 22, RecordCode::kScheduleDown, 1);
  Record(stage, 23, RecordCode::kBatteryLowOrUpsFault, 2);
  return Day(stage);
}

std::unique_ptr<QWidget> DayOfManyEvents(Stage& stage) {
  stage.Start();
  for (int hour = 0; hour < 24; ++hour) {
    for (int code = 0; code < 3; ++code) {
      constexpr int kCounts[] = {1, 9, 10, 27, 108, 999, 1234, 8, 20000, 64, 88, 350};
      Record(stage, hour, static_cast<RecordCode>(code), kCounts[(hour + code) % 12]);
    }
  }
  return Day(stage);
}

std::unique_ptr<QWidget> LogOfEvents(Stage& stage) {
  stage.Start();
  for (int day = 0; day < 5; ++day) {
    for (const Message message :
         {Message::kProgramStart, Message::kMainsFailed, Message::kBatteryLow,
          Message::kSwitchOnTime, Message::kSwitchOffTime, Message::kShutdownByMenu,
          Message::kProgramEnd}) {
      stage.journals.WriteLog(stage.state.Text(message));
    }
  }
  stage.journals.WriteLog(stage.state.Text(Message::kCountdownEnded));
  auto window = Log(stage);
  auto* list = window->findChild<LongList*>("lines");
  QTimer::singleShot(0, list, [list] {
    list->setCurrentIndex(list->model()->index(list->model()->rowCount() - 3, 0));
  });
  return window;
}

std::unique_ptr<QWidget> LogWithoutFile(Stage& stage) {
  stage.Start();
  stage.disk.Remove(stage.journals.LogPath());
  return Log(stage);
}

std::unique_ptr<QWidget> ShutdownReport(Stage& stage) {
  stage.Start();
  const std::string path = stage.host.ReportDirectory() + "/SaverApp.INI";
  stage.disk.files[path] = kReport;
  auto window = std::make_unique<ShutdownReportWindow>(stage.state, stage.disk, path);
  auto* list = window->findChild<LongList*>("applications");
  QTimer::singleShot(0, list, [list] { list->setCurrentIndex(list->model()->index(0, 0)); });
  return window;
}

}  // namespace orvane::shots
