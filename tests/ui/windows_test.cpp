#include "ui/windows.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QMessageBox>
#include <QPointer>
#include <QTimer>
#include <QWidget>
#include <QWindow>
#include <functional>
#include <string>
#include <vector>

namespace orvane::test {
namespace {

struct WindowsTest : testing::Test {
  using Events = std::vector<std::string>;

  WindowsTest() {
    windows.MakeMain(main,
                     {[this] {
                        Tell("Form_Load");
                        OnLoad();
                        return true;
                      },
                      [this] { Tell("Form_Activate"); }, [this] { Tell("Form_QueryUnload"); }});
    windows.Make(Form::frmLog, [this] { return log = new QWidget; });
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
    windows.Show(Form::frmMain);
    if (!windows.Ended()) QApplication::exec();
    EXPECT_EQ(next, steps.size());
  }

  QWidget main;
  Windows windows;
  Events events;
  std::function<void()> OnLoad = [] {};
  QPointer<QWidget> log;
};

TEST_F(WindowsTest, ClosingByTheUserIsAnUnloadAndTheMainWindowsEndsTheProgram) {
  Run({[&] { windows.Show(Form::frmLog); },
       [&] {
         log->close();
         EXPECT_EQ(windows.Window(Form::frmLog), nullptr);
         EXPECT_TRUE(main.isVisible());
       },
       [&] { main.close(); }});
  windows.End();
  windows.UnloadMain();
  EXPECT_EQ(events, (Events{"Form_Load", "Form_Activate", "Form_QueryUnload"}));
}

TEST_F(WindowsTest, ShowAfterUnloadInOneHandlerIsAReload) {
  Run({[&] {
         windows.Unload(Form::frmMain);
         // The system may go down behind a box of the load.
         OnLoad = [&] {
           windows.Hide(Form::frmMain);
           EXPECT_FALSE(main.isVisible());
         };
         windows.Show(Form::frmMain);
       },
       [&] { windows.End(); }});
  EXPECT_EQ(events, (Events{"Form_Load", "Form_Activate", "Form_QueryUnload", "Form_Load",
                            "Form_Activate", "Form_QueryUnload"}));
}

TEST_F(WindowsTest, FormsAreMadeOnceAndAnewAfterTheirUnload) {
  QPointer<QWidget> first;
  Run({[&] {
         windows.Show(Form::frmAbout);  // nobody makes it
         windows.Show(Form::frmLog);
         first = log;
         windows.Hide(Form::frmLog);
         windows.Show(Form::frmLog);
         EXPECT_EQ(log, first);
         EXPECT_TRUE(log->isVisible());
         windows.Unload(Form::frmLog);
         EXPECT_TRUE(first) << "deleted under its own handler";
         windows.Show(Form::frmLog);
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
    windows.Show(Form::frmLog);
    // What a click in the form does.
    QTimer::singleShot(0, log, [this] {
      const QPointer<QWidget> form = log;
      QMessageBox box;
      QTimer::singleShot(0, [this] { windows.Unload(Form::frmLog); });
      QTimer::singleShot(20, &box, &QMessageBox::reject);
      box.exec();
      EXPECT_TRUE(form) << "deleted while its handler waits";
      windows.End();
    });
  }});
}

TEST_F(WindowsTest, WindowThatStaysOnTopComesUpBehindABox) {
  windows.Make(Form::frmAlert, [] { return new QWidget(nullptr, Qt::WindowStaysOnTopHint); });
  QMessageBox box;
  QTimer::singleShot(0, [&] {
    windows.Show(Form::frmAlert);
    EXPECT_TRUE(windows.Window(Form::frmAlert)->isVisible());
    EXPECT_TRUE(box.windowHandle()->flags().testFlag(Qt::WindowStaysOnTopHint));
    box.reject();
  });
  box.exec();
}

TEST_F(WindowsTest, EndInTheMiddleOfTheLoadUnloadsAtItsEnd) {
  OnLoad = [this] {
    QMessageBox box;
    QTimer::singleShot(0, [this] { windows.End(); });
    box.exec();
    EXPECT_EQ(events, Events{"Form_Load"});
  };
  EXPECT_FALSE(windows.LoadMain());
  EXPECT_TRUE(windows.Ended());
  EXPECT_EQ(events, (Events{"Form_Load", "Form_QueryUnload"}));
  EXPECT_FALSE(windows.LoadMain()) << "loads after the end";
}

}  // namespace
}  // namespace orvane::test
