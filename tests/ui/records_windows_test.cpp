// The three windows that show what is recorded.
#include <QTest>

#include "ui/day_history_window.h"
#include "ui/log_window.h"
#include "ui/long_list.h"
#include "ui/opened_window.h"
#include "ui/shutdown_report_window.h"

namespace orvane::test {
namespace {

const std::string kRecords = "/prog/DateRec.rec";
const std::string kSystemLog = "/prog/System.log";
const std::string kReportFile = "/windows/SaverApp.INI";

constexpr const char* kReport =
    "[Main]\r\nShowMsg=1\r\nAppNumber=2\r\nApp0=Editor\r\nApp1=Sheet\r\n"
    "[Editor]\r\nTitle=Letter\r\nFileNumber=2\r\nFile0=a.txt\r\nFile1=信.txt\r\n"
    "[Sheet]\r\nTitle=Budget\r\nFileNumber=1\r\nFile0=c.csv\r\n";

struct RecordsWindowsTest : OpenedWindow {
  void Records(int count, const std::string& date_and_hour, int code) {
    while (count-- > 0) {
      disk.files[kRecords] += "\"\n" + date_and_hour + ' ' + std::to_string(code) + "\"\r\n";
    }
  }

  void OpenDays() { Open(new DayHistoryWindow(state, disk, time, kRecords)); }

  LongList& List(const char* name) { return Part<LongList>(*window, name); }
  // What a list shows.
  QStringList Lines(const char* name) {
    const QAbstractItemModel& model = *List(name).model();
    QStringList lines;
    for (int i = 0; i < model.rowCount(); ++i) lines += model.index(i, 0).data().toString();
    return lines;
  }
  void ClickLine(int row) {
    LongList& list = List("applications");
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {},
                      list.visualRect(list.model()->index(row, 0)).center());
  }
};

TEST_F(RecordsWindowsTest, LargerDayHasLargerFramesAndTheSameButtons) {
  Records(1, "2001-02-16 23", 1);
  OpenDays();
  const QSize before = window->size();
  const QRect mark = Part(*window, "mark_47").geometry();
  const QRect next = Part(*window, "next").geometry();
  window->resize(before * 2);
  QApplication::processEvents();
  const QRect larger = Part(*window, "mark_47").geometry();
  EXPECT_EQ(larger.width(), 2 * mark.width());
  EXPECT_GT(larger.height(), 2 * mark.height());
  EXPECT_LT(larger.right(), before.width() * 2);
  EXPECT_EQ(Part(*window, "next").geometry(), next.translated(0, before.height()));
  EXPECT_LT(larger.bottom(), Part(*window, "next").y());
  window->resize(before);
  QApplication::processEvents();
  EXPECT_EQ(Part(*window, "mark_47").geometry(), mark);
}

TEST_F(RecordsWindowsTest, DaysStepByButtonsAndByArrowKeys) {
  Records(2, "2001-02-16 05", 1);
  Records(1, "2001-02-17 05", 1);
  Records(1, "2001-03-31 06", 1);
  OpenDays();
  const struct {
    const char* target;
    Qt::Key key;
    const char *date, *tip;  // the mark's tip is empty while there is no mark
    Qt::KeyboardModifier modifier = Qt::NoModifier;
  } steps[] = {{"day", Qt::Key_Right, "2001-02-17", "05:00–05:59  AC Fail: 1"},
               {"next", Qt::Key_Return, "2001-02-18", ""},
               {"previous", Qt::Key_Space, "2001-02-17", "05:00–05:59  AC Fail: 1"},
               {"next", Qt::Key_Left, "2001-02-16", "05:00–05:59  AC Fail: 2"},
               {"day", Qt::Key_PageUp, "2001-01-16", ""},
               {"day", Qt::Key_PageUp, "2000-12-16", ""},
               {"day", Qt::Key_PageDown, "2001-01-16", ""},
               {"day", Qt::Key_Right, "2001-02-16", "05:00–05:59  AC Fail: 2", Qt::ControlModifier},
               {"day", Qt::Key_Right, "2001-02-17", "05:00–05:59  AC Fail: 1", Qt::ControlModifier},
               {"day", Qt::Key_Right, "2001-03-31", "", Qt::ControlModifier},
               {"day", Qt::Key_Right, "2001-03-31", "", Qt::ControlModifier},
               {"day", Qt::Key_PageUp, "2001-02-28", ""},
               {"day", Qt::Key_Left, "2001-02-17", "05:00–05:59  AC Fail: 1", Qt::ControlModifier},
               {"next", Qt::Key_Home, "2001-02-16", "05:00–05:59  AC Fail: 2"}};
  for (const auto& [target, key, date, tip, modifier] : steps) {
    Part(*window, target).setFocus();
    QTest::keyClick(&Part(*window, target), key, modifier);
    EXPECT_EQ(TextOf(*window, "date"), date);
    const QWidget& mark = Part(*window, "mark_29");
    EXPECT_EQ(mark.isVisible() ? mark.toolTip() : "", tip) << date;
  }
  QTest::keyClick(window.get(), Qt::Key_Escape);
  EXPECT_FALSE(window->isVisible());
}

TEST_F(RecordsWindowsTest, LogIsShownAndCleared) {
  disk.files[kSystemLog] =
      "\"\n2001-02-16 9:05:33 Program start\"\r\n"
      "\"\n2001-02-16 9:06:00 \xCA\xD0\xB5\xE7\xCA\xA7\xD0\xA7\"\r\n";
  const std::string file = Log();
  Open(new LogWindow(state, disk, dialogs, kSystemLog));
  EXPECT_EQ(Lines("lines"), (QStringList{"\"2001-02-16 9:05:33 Program start\"",
                                         "\"2001-02-16 9:06:00 市电失效\""}));
  EXPECT_EQ(List("lines").currentIndex().row(), 1) << "opens at the newest event";
  Push("clear");
  EXPECT_EQ(Lines("lines").size(), 2);
  EXPECT_EQ(Log(), file);
  dialogs.answer = true;
  Push("clear");
  EXPECT_EQ(Lines("lines"), QStringList{});
  EXPECT_FALSE(disk.Exists(kSystemLog));
  Push("exit");
  EXPECT_FALSE(window->isVisible());
}

TEST_F(RecordsWindowsTest, ChosenApplicationTellsItsFiles) {
  disk.files[kReportFile] = kReport;
  Open(new ShutdownReportWindow(state, disk, kReportFile));
  EXPECT_EQ(Lines("applications"), (QStringList{"Letter", "Budget"}));
  EXPECT_EQ(Lines("files"), QStringList{});
  QTest::keyClick(window->focusWidget(), Qt::Key_Down);
  EXPECT_EQ(Lines("files"), (QStringList{"a.txt", "信.txt"}));
  ClickLine(1);
  EXPECT_EQ(Lines("files"), QStringList{"c.csv"});
  // A click on what is selected already reads it anew.
  std::string& file = disk.files[kReportFile];
  file.replace(file.find("FileNumber=1"), 12, "FileNumber=2") += "File1=d.csv\r\n";
  ClickLine(1);
  EXPECT_EQ(Lines("files"), (QStringList{"c.csv", "d.csv"}));
  // So does a user who comes back from another form.
  QWidget other;
  Present(other);
  file = "[Main]\r\nShowMsg=1\r\nAppNumber=1\r\nApp0=X\r\n[X]\r\nTitle=New\r\n";
  Present(*window);
  EXPECT_EQ(Lines("applications"), QStringList{"New"});
  EXPECT_TRUE(List("applications").selectionModel()->selectedIndexes().isEmpty());
  EXPECT_EQ(Lines("files"), (QStringList{"c.csv", "d.csv"}));
  Push("clear");
  EXPECT_EQ(Lines("applications") + Lines("files"), QStringList{});
  EXPECT_NE(file.find("ShowMsg=0"), std::string::npos);
  Push("exit");
  EXPECT_FALSE(window->isVisible());
}

}  // namespace
}  // namespace orvane::test
