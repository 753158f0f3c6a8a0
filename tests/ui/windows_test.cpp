#include "ui/windows.h"

#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QMenu>
#include <QMessageBox>
#include <QPointer>
#include <QTimer>
#include <QWidget>
#include <QWindow>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace orvane::test {
namespace {

struct WindowsTest : testing::Test {
  using Events = std::vector<std::string>;

  WindowsTest() {
    windows.MakeMain(main, {[this] {
                              Tell("Load");
                              loaded = true;
                              OnLoad();
                              return loaded;
                            },
                            [this] { Tell("Activate"); },
                            [this] {
                              if (std::exchange(loaded, false)) Tell("Unload");
                            },
                            [this] { return loaded; }});
    windows.Make(Form::kLog, [this] { return log = new QWidget; });
  }
  // Some activations come from the window system and some do not; one after the other is as good as
  // one.
  void Tell(const char* event) {
    if (events.empty() || events.back() != event) events.emplace_back(event);
  }

  // Runs the program until it ends; each step when the one before has been dealt with.
  void Run(std::vector<std::function<void()>> steps) {
    QTimer timer;
    std::size_t next = 0;
    QObject::connect(&timer, &QTimer::timeout, [&] {
      if (next + 1 == steps.size()) timer.stop();
      steps[next++]();
    });
    timer.start(0);
    windows.Show(Form::kMain);
    if (!windows.Ended()) QApplication::exec();
    EXPECT_EQ(next, steps.size());
  }

  QWidget main;
  bool loaded = false;
  Windows windows;
  Events events;
  std::function<void()> OnLoad = [] {};
  QPointer<QWidget> log;
};

TEST_F(WindowsTest, ClosingByTheUserIsAnUnloadAndTheMainWindowsEndsTheProgram) {
  Run({[&] { windows.Show(Form::kLog); },
       [&] {
         log->close();
         EXPECT_EQ(windows.Window(Form::kLog), nullptr);
         EXPECT_TRUE(main.isVisible());
       },
       [&] { main.close(); }});
  windows.End();
  EXPECT_EQ(events, (Events{"Load", "Activate", "Unload"}));
}

TEST_F(WindowsTest, ShowAfterUnloadInOneHandlerIsAReload) {
  Run({[&] {
         windows.Unload(Form::kMain);
         // The system may go down behind a box of the load.
         OnLoad = [&] {
           windows.Hide(Form::kMain);
           EXPECT_FALSE(main.isVisible());
         };
         windows.Show(Form::kMain);
       },
       [&] { windows.End(); }});
  EXPECT_EQ(events, (Events{"Load", "Activate", "Unload", "Load", "Activate", "Unload"}));
}

TEST_F(WindowsTest, FormsAreMadeOnceAndAnewAfterTheirUnload) {
  QPointer<QWidget> first;
  Run({[&] {
         windows.Show(Form::kAbout);  // nobody makes it
         windows.Show(Form::kLog);
         first = log;
         windows.Hide(Form::kLog);
         windows.Show(Form::kLog);
         EXPECT_EQ(log, first);
         EXPECT_TRUE(log->isVisible());
         windows.Unload(Form::kLog);
         EXPECT_TRUE(first) << "deleted under its own handler";
         windows.Show(Form::kLog);
         EXPECT_NE(log, first);
       },
       [&] {
         EXPECT_FALSE(first);
         windows.End();
       }});
  EXPECT_FALSE(log->isVisible());
}

TEST_F(WindowsTest, FormOutlivesItsHandlerThatABoxHolds) {
  Run({[&] {
    windows.Show(Form::kLog);
    // What a click in the form does.
    QTimer::singleShot(0, log, [this] {
      const QPointer<QWidget> form = log;
      QMessageBox box;
      QTimer::singleShot(0, [this] { windows.Unload(Form::kLog); });
      QTimer::singleShot(20, &box, &QMessageBox::reject);
      box.exec();
      EXPECT_TRUE(form) << "deleted while its handler waits";
      windows.End();
    });
  }});
}

TEST_F(WindowsTest, WindowThatStaysOnTopComesUpBehindABox) {
  windows.Make(Form::kAlert, [] { return new QWidget(nullptr, Qt::WindowStaysOnTopHint); });
  QMessageBox box;
  QTimer::singleShot(0, [&] {
    windows.Show(Form::kAlert);
    EXPECT_TRUE(windows.Window(Form::kAlert)->isVisible());
    EXPECT_TRUE(box.windowHandle()->flags().testFlag(Qt::WindowStaysOnTopHint));
    box.reject();
  });
  box.exec();
}

// Menus and lists hold the keyboard and the pointer, boxes the program.
TEST_F(WindowsTest, DismissTakesAwayWhateverStandsOpen) {
  main.show();
  QMenu menu, submenu;
  menu.addMenu(&submenu);
  QComboBox list(&main);
  list.addItems({"one", "two"});
  list.show();
  QMessageBox first, second;
  for (QMessageBox* box : {&first, &second}) {
    box->setStandardButtons(QMessageBox::Yes | QMessageBox::No);
  }
  QTimer::singleShot(0, [&] {
    QTimer::singleShot(0, [&] {
      list.showPopup();
      menu.popup({});
      submenu.popup({});
      ASSERT_EQ(QApplication::activePopupWidget(), &submenu);
      windows.Dismiss();
      EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
      EXPECT_FALSE(list.view()->isVisible());
      for (const QMessageBox* box : {&first, &second}) EXPECT_FALSE(box->isVisible());
    });
    EXPECT_EQ(second.exec(), QMessageBox::No);
  });
  EXPECT_EQ(first.exec(), QMessageBox::No);
  windows.Dismiss();
}

TEST_F(WindowsTest, EndInTheMiddleOfTheLoadIsTheEnd) {
  OnLoad = [this] {
    QMessageBox box;
    QTimer::singleShot(0, [&] {
      windows.End();
      EXPECT_FALSE(box.isVisible());
    });
    box.exec();
    EXPECT_FALSE(main.isVisible());
  };
  EXPECT_FALSE(windows.LoadMain());
  EXPECT_TRUE(windows.Ended());
  EXPECT_EQ(events, (Events{"Load", "Unload"}));
  EXPECT_FALSE(windows.LoadMain()) << "loads after the end";
}

}  // namespace
}  // namespace orvane::test
