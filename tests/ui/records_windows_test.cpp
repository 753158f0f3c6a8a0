// The three windows that show what is recorded.
#include <gtest/gtest.h>

#include <QApplication>
#include <QEventLoop>
#include <QLabel>
#include <QPixmapCache>
#include <QPushButton>
#include <QTest>
#include <functional>

#include "support/world.h"
#include "ui/day_grid.h"
#include "ui/day_history_window.h"
#include "ui/log_window.h"
#include "ui/long_list.h"
#include "ui/shutdown_record_window.h"
#include "ui/windows.h"

#if defined(__SANITIZE_ADDRESS__)
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();
#endif

namespace orvane::test {
namespace {

constexpr std::int16_t kEnglish = 0;
constexpr std::int16_t kChinese = 1000;

struct WindowWorld : World {
  explicit WindowWorld(std::int16_t language = kEnglish) { state.ResBase = language; }

  void Records(int count, const std::string& date, const std::string& hour, int code) {
    std::string& file = disk.files["/prog/DateRec.rec"];
    while (count-- > 0) {
      file += "\"\n" + date + ' ' + hour + ' ' + std::to_string(code) + "\"\r\n";
    }
  }
  void Report(const std::string& text) { disk.files["/windows/SaverApp.INI"] = text; }

  DayHistoryWindow* DayHistory() {
    return Opened(new DayHistoryWindow(state, disk, time, journals.DateRecPath()));
  }
  LogWindow* Log() { return Opened(new LogWindow(state, disk, dialogs, journals.LogPath())); }
  ShutdownRecordWindow* ShutdownRecord() {
    return Opened(new ShutdownRecordWindow(state, disk, "/windows/SaverApp.INI"));
  }

 private:
  template <class Window>
  Window* Opened(Window* window) {
    open_.emplace_back(window);
    window->show();
    window->activateWindow();
    QApplication::processEvents();
    return window;
  }

  std::vector<std::unique_ptr<QWidget>> open_;
};

QWidget* Find(const QWidget* window, const char* name) {
  auto* found = window->findChild<QWidget*>(name);
  EXPECT_NE(found, nullptr) << name;
  return found;
}

QString TextOf(const QWidget* window, const char* name) {
  const QWidget* control = Find(window, name);
  if (const auto* label = qobject_cast<const QLabel*>(control)) return label->text();
  return qobject_cast<const QPushButton*>(control)->text();
}

LongList* List(const QWidget* window, const char* name) {
  return qobject_cast<LongList*>(Find(window, name));
}

QStringList Lines(const LongList* list) {
  QStringList lines;
  for (int i = 0; i < list->model()->rowCount(); ++i) {
    lines += list->model()->index(i, 0).data().toString();
  }
  return lines;
}

void ClickLine(LongList* list, int row) {
  QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                    list->visualRect(list->model()->index(row, 0)).center());
}

void Click(const QWidget* window, const char* name) {
  QTest::mouseClick(Find(window, name), Qt::LeftButton);
}

// The window that `show` opens looks in both languages as told.
struct Texts {
  const char* control;  // null for the title
  QString english;
  QString chinese;
};

void ExpectTexts(const QWidget* english, const QWidget* chinese, const std::vector<Texts>& texts) {
  for (const Texts& t : texts) {
    EXPECT_EQ(t.control ? TextOf(english, t.control) : english->windowTitle(), t.english);
    EXPECT_EQ(t.control ? TextOf(chinese, t.control) : chinese->windowTitle(), t.chinese);
  }
}

struct Geometry {
  const char* control;
  int left, top, width, height;  // twips
};

void ExpectPlaces(const QWidget* window, const std::vector<Geometry>& controls) {
  for (const auto& [name, left, top, width, height] : controls) {
    const QRect place(QPoint(qRound(left / 15.), qRound(top / 15.)),
                      QPoint(qRound((left + width) / 15.) - 1, qRound((top + height) / 15.) - 1));
    EXPECT_EQ(Find(window, name)->geometry(), place) << name;
  }
}

TEST(DayHistoryWindow, StandsAsDesigned) {
  WindowWorld english(kEnglish), chinese(kChinese);
  const QWidget* window = english.DayHistory();
  EXPECT_EQ(window->size(), QSize(7680 / 15, 5760 / 15));
  EXPECT_EQ(window->minimumSize(), window->maximumSize());
  ExpectPlaces(window, {{"Shape1(2)", 210, 225, 360, 240},
                        {"Shape1(0)", 2985, 225, 360, 240},
                        {"Shape1(1)", 5025, 225, 360, 240},
                        {"lblDate", 1335, 4545, 1680, 375},
                        {"cmdPrev", 780, 5130, 1095, 420},
                        {"cmdNext", 2115, 5130, 1095, 420},
                        {"cmdCancel", 5685, 4815, 1365, 555}});
  ExpectTexts(window, chinese.DayHistory(),
              {{nullptr, "Even Day", "日历史记录分析"},
               {"Label1", "= Schedule Down", "= 定时关机"},
               {"Label2", "= AC Fail", "= 市电中断"},
               {"Label3", "= UPS Batt. Low", "= UPS低电位"},
               {"Label5", "Date:", "日期:"},
               {"cmdPrev", "Prev", "上一天"},
               {"cmdNext", "Next", "下一天"},
               {"cmdCancel", "Cancel", "取消"},
               {"lblDate", "2001-02-16", "2001-02-16"}});
}

TEST(DayHistoryWindow, DrawsMarksAndCountsInTheirPlaces) {
  WindowWorld world;
  world.Records(1, "2001-02-16", "00", 0);
  world.Records(3, "2001-02-16", "14", 1);
  world.Records(1, "2001-02-16", "23", 2);
  const QWidget* window = world.DayHistory();
  ExpectPlaces(window, {{"shpDate(0)", 255, 1100, 210, 180},
                        {"lblCount(0)", 555, 1070, 120, 240},
                        {"shpDate(38)", 1455, 3355, 210, 180},
                        {"lblCount(38)", 1755, 3325, 120, 240},
                        {"shpDate(71)", 6855, 3710, 210, 180}});
  const QImage picture = const_cast<QWidget*>(window)->grab().toImage();
  const auto colour = [&](const char* mark) {
    return picture.pixelColor(Find(window, mark)->geometry().center());
  };
  EXPECT_EQ(colour("shpDate(0)"), QColor(0, 0, 255));
  EXPECT_EQ(colour("shpDate(38)"), QColor(255, 255, 0));
  EXPECT_EQ(colour("shpDate(71)"), QColor(255, 0, 0));
  EXPECT_EQ(Find(window, "shpDate(38)")->toolTip(), "14:00–14:59  AC Fail: 3");
  EXPECT_EQ(Find(window, "shpDate(38)")->accessibleName(), "14:00–14:59  AC Fail: 3");
  EXPECT_EQ(Find(window, "DayGrid")->accessibleDescription(),
            "00:00–00:59  Schedule Down: 1; 14:00–14:59  AC Fail: 3; "
            "23:00–23:59  UPS Batt. Low: 1");
}

TEST(DayHistoryWindow, StepsByButtonsAndByArrowKeys) {
  WindowWorld world;
  world.Records(2, "2001-02-16", "05", 1);
  world.Records(1, "2001-02-17", "05", 1);
  world.Records(1, "2001-02-15", "06", 1);
  DayHistoryWindow* window = world.DayHistory();
  struct Case {
    std::function<void()> step;
    const char* date;
    bool fives;
    bool sixes;
    const char* fives_tip;
  };
  const auto key = [&](Qt::Key k) { return [window, k] { QTest::keyClick(window, k); }; };
  const auto click = [&](const char* name) { return [window, name] { Click(window, name); }; };
  const Case cases[] = {
      {[] {}, "2001-02-16", true, false, "05:00–05:59  AC Fail: 2"},
      {key(Qt::Key_Right), "2001-02-17", true, false, "05:00–05:59  AC Fail: 1"},
      {click("cmdNext"), "2001-02-18", false, false, nullptr},
      {click("cmdPrev"), "2001-02-17", true, false, "05:00–05:59  AC Fail: 1"},
      {key(Qt::Key_Left), "2001-02-16", true, false, "05:00–05:59  AC Fail: 2"},
      {key(Qt::Key_Left), "2001-02-15", false, true, nullptr},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.date);
    c.step();
    EXPECT_EQ(TextOf(window, "lblDate"), c.date);
    const auto visible = [window](const char* name) {
      const auto* mark = window->findChild<QWidget*>(name);
      return mark && mark->isVisible();
    };
    for (const char* name : {"shpDate(29)", "lblCount(29)"}) EXPECT_EQ(visible(name), c.fives);
    for (const char* name : {"shpDate(30)", "lblCount(30)"}) EXPECT_EQ(visible(name), c.sixes);
    if (c.fives_tip) {
      EXPECT_EQ(Find(window, "shpDate(29)")->toolTip(), c.fives_tip);
    }
  }
}

TEST(DayHistoryWindow, ACountOfManyDigitsHasRoomUpToTheNextMark) {
  for (const int count : {10, 100, 12345}) {
    WindowWorld world;
    world.Records(count, "2001-02-16", "10", 1);
    world.Records(count, "2001-02-16", "11", 1);
    const QWidget* window = world.DayHistory();
    const QRect inner = Find(window, "lblCount(34)")->geometry();
    EXPECT_EQ(inner.topLeft(), QPoint(6555 / 15, 1425 / 15));
    EXPECT_FALSE(inner.intersects(Find(window, "shpDate(35)")->geometry()));
    EXPECT_GE(inner.width(), count < 100 ? 14 : 19);
    EXPECT_TRUE(window->rect().contains(Find(window, "lblCount(35)")->geometry()));
  }
}

TEST(LogWindow, StandsAsDesigned) {
  WindowWorld english(kEnglish), chinese(kChinese);
  for (WindowWorld* world : {&english, &chinese}) world->journals.WriteLog("Program start");
  const QWidget* window = english.Log();
  EXPECT_EQ(window->size(), QSize(5355 / 15, 5220 / 15));
  ExpectPlaces(window, {{"List1", 30, 30, 5265, 4140},
                        {"cmdClear", 1140, 4440, 1455, 480},
                        {"cmdCancel", 3060, 4440, 1455, 480}});
  ExpectTexts(window, chinese.Log(),
              {{nullptr, "Log File", "事件记录"},
               {"cmdClear", "&Clear", "清空(&C)"},
               {"cmdCancel", "&Exit", "离开(&E)"}});
  const QPalette palette = Find(window, "List1")->palette();
  EXPECT_EQ(palette.color(QPalette::Base), QColor(192, 0, 192));
  EXPECT_EQ(palette.color(QPalette::Text), QColor(Qt::white));
}

TEST(LogWindow, WithoutALogTheCaptionsAreChinese) {
  WindowWorld world(kEnglish);
  const QWidget* window = world.Log();
  EXPECT_EQ(window->windowTitle(), "事件记录");
  EXPECT_EQ(TextOf(window, "cmdClear"), "清空(&C)");
  EXPECT_EQ(TextOf(window, "cmdCancel"), "离开(&E)");
  Click(window, "cmdClear");
  EXPECT_EQ(world.events, Events{});
}

TEST(LogWindow, ShowsAndClearsTheLog) {
  WindowWorld world;
  world.journals.WriteLog("Program start");
  world.disk.files["/prog/System.log"] +=
      "\"\n2001-02-16 9:06:00 \xCA\xD0\xB5\xE7\xCA\xA7\xD0\xA7\"\r\n";
  const std::string file = world.World::Log();
  const QWidget* window = world.Log();
  EXPECT_EQ(Lines(List(window, "List1")), (QStringList{"\"2001-02-16 9:05:33 Program start\"",
                                                       "\"2001-02-16 9:06:00 市电失效\""}));
  EXPECT_EQ(world.World::Log(), file);
  // So that one key goes to the newest event.
  EXPECT_TRUE(Find(window, "List1")->hasFocus());
  Click(window, "cmdClear");
  EXPECT_EQ(Lines(List(window, "List1")).size(), 2);
  world.dialogs.answer = true;
  Click(window, "cmdClear");
  EXPECT_EQ(Lines(List(window, "List1")), QStringList{});
  EXPECT_FALSE(world.disk.Exists("/prog/System.log"));
}

constexpr const char* kReport =
    "[Main]\r\nShowMsg=1\r\nAppNumber=2\r\nApp0=Editor\r\nApp1=Sheet\r\n"
    "[Editor]\r\nTitle=Letter\r\nFileNumber=2\r\nFile0=a.txt\r\nFile1=b.txt\r\n"
    "[Sheet]\r\nTitle=Budget\r\nFileNumber=1\r\nFile0=c.csv\r\n";

TEST(ShutdownRecordWindow, StandsAsDesigned) {
  WindowWorld english(kEnglish), chinese(kChinese);
  const QWidget* window = english.ShutdownRecord();
  EXPECT_EQ(window->size(), QSize(4320 / 15, 5040 / 15));
  ExpectPlaces(window, {{"List1", 120, 360, 4095, 1500},
                        {"List2", 120, 2400, 4095, 2040},
                        {"Command1", 480, 4560, 1335, 375},
                        {"Command2", 2640, 4560, 1335, 375}});
  EXPECT_EQ(Find(window, "Label2")->pos(), QPoint(8, 8));
  EXPECT_EQ(Find(window, "Label1")->pos(), QPoint(8, 144));
  ExpectTexts(window, chinese.ShutdownRecord(),
              {{nullptr, "Close Information", "关闭系统纪录"},
               {"Label2", "Close Application", "上次正常关闭的应用程序窗口："},
               {"Label1", "Related Saving FileNames", "应用程序保存的相关文件："},
               {"Command1", "&Clear", "清除纪录(&C)"},
               {"Command2", "&Exit", "关闭窗口(&E)"}});
}

TEST(ShutdownRecordWindow, ListsTheFilesOfTheChosenApplication) {
  WindowWorld world;
  world.Report(kReport);
  const QWidget* window = world.ShutdownRecord();
  LongList* List1 = List(window, "List1");
  LongList* List2 = List(window, "List2");
  EXPECT_EQ(Lines(List1), (QStringList{"Letter", "Budget"}));
  EXPECT_EQ(Lines(List2), QStringList{});
  EXPECT_TRUE(List1->hasFocus());
  QTest::keyClick(List1, Qt::Key_Down);
  EXPECT_EQ(Lines(List2), (QStringList{"a.txt", "b.txt"}));
  QTest::keyClick(List1, Qt::Key_Down);
  EXPECT_EQ(Lines(List2), QStringList{"c.csv"});
  // A click on what is selected already reads it anew.
  world.Report(std::string(kReport) + "File1=d.csv\r\n");
  world.disk.files["/windows/SaverApp.INI"].replace(
      world.disk.files["/windows/SaverApp.INI"].find("FileNumber=1"), 12, "FileNumber=2");
  ClickLine(List1, 1);
  EXPECT_EQ(Lines(List2), (QStringList{"c.csv", "d.csv"}));
}

TEST(RecordsWindows, EnterClicksTheButtonInFocusAndEscapeLeaves) {
  WindowWorld world;
  world.journals.WriteLog("Program start");
  const QWidget* day = world.DayHistory();
  QTest::keyClick(Find(day, "cmdNext"), Qt::Key_Return);
  EXPECT_EQ(TextOf(day, "lblDate"), "2001-02-17");
  const QWidget* log = world.Log();
  world.dialogs.answer = true;
  QTest::keyClick(Find(log, "cmdClear"), Qt::Key_Enter);
  EXPECT_EQ(Lines(List(log, "List1")), QStringList{});
  struct Case {
    QWidget* window;
    const char* leaving;
  };
  for (const auto& [window, leaving] :
       {Case{world.DayHistory(), "cmdCancel"}, Case{world.Log(), "cmdCancel"},
        Case{world.ShutdownRecord(), "Command2"}}) {
    window->activateWindow();
    QApplication::processEvents();
    QTest::keyClick(window, Qt::Key_Escape);
    EXPECT_FALSE(window->isVisible()) << leaving;
    window->show();
    Click(window, leaving);
    EXPECT_FALSE(window->isVisible()) << leaving;
  }
}

TEST(ShutdownRecordWindow, IsFilledAnewWhenTheUserComesBackFromAnotherForm) {
  WindowWorld world;
  world.Report(kReport);
  auto* window = world.ShutdownRecord();
  LongList* List1 = List(window, "List1");
  LongList* List2 = List(window, "List2");
  ClickLine(List1, 0);
  QWidget other;
  other.show();
  other.activateWindow();
  QApplication::processEvents();
  ASSERT_TRUE(other.isActiveWindow());
  world.Report("[Main]\r\nShowMsg=1\r\nAppNumber=1\r\nApp0=X\r\n[X]\r\nTitle=New\r\n");
  window->activateWindow();
  QApplication::processEvents();
  EXPECT_EQ(Lines(List1), QStringList{"New"});
  EXPECT_TRUE(List1->selectionModel()->selectedIndexes().isEmpty());
  EXPECT_EQ(Lines(List2), (QStringList{"a.txt", "b.txt"}));
  Click(window, "Command1");
  EXPECT_EQ(Lines(List1), QStringList{});
  EXPECT_EQ(Lines(List2), QStringList{});
  EXPECT_NE(world.disk.files["/windows/SaverApp.INI"].find("ShowMsg=0"), std::string::npos);
}

TEST(ShutdownRecordWindow, ADamagedCountCostsNothing) {
  WindowWorld world;
  world.Report(
      "[Main]\r\nShowMsg=1\r\nAppNumber=999999999\r\nApp0=A\r\n"
      "[A]\r\nTitle=One\r\nFileNumber=1000000\r\n");
  const QWidget* window = world.ShutdownRecord();
  LongList* List1 = List(window, "List1");
  EXPECT_EQ(List1->model()->rowCount(), 999'999'999);
  EXPECT_EQ(List1->model()->index(0, 0).data().toString(), "One");
  ClickLine(List1, 0);
  EXPECT_EQ(List(window, "List2")->model()->rowCount(), 1'000'000);
  QTest::keyClick(List1, Qt::Key_End);
  EXPECT_EQ(List1->currentIndex().row(), 999'999'998);
  EXPECT_EQ(List(window, "List2")->model()->rowCount(), 0);
}

// Bytes in use; 0 where nobody counts them.
std::size_t BytesInUse() {
#if defined(__SANITIZE_ADDRESS__)
  return __sanitizer_get_current_allocated_bytes();
#else
  return 0;
#endif
}

TEST(RecordsWindows, OpenAndCloseWithoutAGrowthOfMemory) {
  WindowWorld world;
  world.Report(kReport);
  for (int i = 0; i < 100; ++i) world.journals.WriteLog("AC fail");
  for (int hour = 0; hour < 24; ++hour)
    world.Records(3, "2001-02-16", hour < 10 ? '0' + std::to_string(hour) : std::to_string(hour),
                  hour % 3);
  QWidget main;
  Windows windows;
  windows.MakeMain(main, {[] { return true; }, [] {}, [] {}});
  windows.LoadMain();
  windows.Make(Form::frmDateRc, [&] {
    return new DayHistoryWindow(world.state, world.disk, world.time, world.journals.DateRecPath());
  });
  windows.Make(Form::frmLog, [&] {
    return new LogWindow(world.state, world.disk, world.dialogs, world.journals.LogPath());
  });
  windows.Make(Form::frmShutRec, [&] {
    return new ShutdownRecordWindow(world.state, world.disk, "/windows/SaverApp.INI");
  });
  const auto cycle = [&](int times) {
    while (times-- > 0) {
      for (const Form form : {Form::frmDateRc, Form::frmLog, Form::frmShutRec}) {
        windows.Show(form);
        QApplication::processEvents();
        QEventLoop loop;
        QObject::connect(windows.Window(form), &QObject::destroyed, &loop, &QEventLoop::quit);
        windows.Unload(form);
        loop.exec();
      }
    }
  };
  // The style keeps pictures up to a limit of its own; here it keeps none.
  QPixmapCache::setCacheLimit(0);
  // What is kept for good, as fonts are, is made by the first ones.
  cycle(20);
  const auto widgets = QApplication::allWidgets().size();
  const std::size_t bytes = BytesInUse();
  cycle(1000);
  EXPECT_EQ(QApplication::allWidgets().size(), widgets);
  EXPECT_LT(BytesInUse(), bytes + 100'000);
}

}  // namespace
}  // namespace orvane::test
