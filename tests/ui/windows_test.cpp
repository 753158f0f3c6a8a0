#include "ui/windows.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QEventLoop>
#include <QMessageBox>
#include <QPointer>
#include <QScreen>
#include <QTimer>
#include <QWidget>
#include <algorithm>
#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace orvane::test {
namespace {

constexpr std::chrono::seconds kPatience{30};

QApplication& Application() {
  static int argc = 1;
  static char program[] = "test";
  static char* argv[] = {program, nullptr};
  // Lives to the end of the process, as other tests of it may have made it.
  static auto* application = qApp ? qApp : new QApplication(argc, argv);
  application->setQuitOnLastWindowClosed(false);
  return *application;
}

class WindowsTest : public testing::Test {
 protected:
  WindowsTest() {
    Application();
    main_ = std::make_unique<QWidget>();
    windows_.MakeMain(*main_,
                      {[this] {
                         Tell("Form_Load");
                         if (OnLoad) OnLoad();
                         return loads_;
                       },
                       [this] { Tell("Form_Activate"); }, [this] { Tell("Form_QueryUnload"); }});
    windows_.Make(Form::frmLog, [this] {
      Tell("frmLog");
      log_ = new QWidget;
      return log_.data();
    });
  }
  // Some activations come from the window system and some do not; one after the other is as good as
  // one.
  void Tell(const char* event) {
    if (events_.empty() || events_.back() != event) events_.emplace_back(event);
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
    windows_.Show(Form::frmMain);
    QTimer::singleShot(kPatience, main_.get(), [] { FAIL() << "the program does not end"; });
    QTimer::singleShot(kPatience, main_.get(), &QApplication::quit);
    if (!windows_.Ended()) QApplication::exec();
    EXPECT_EQ(next, steps.size());
  }

  using Events = std::vector<std::string>;

  std::unique_ptr<QWidget> main_;
  Windows windows_;
  Events events_;
  bool loads_ = true;
  std::function<void()> OnLoad;
  QPointer<QWidget> log_;
};

TEST_F(WindowsTest, MainWindowLoadsActivatesAndEnds) {
  Run({[&] { EXPECT_TRUE(main_->isVisible()); }, [&] { windows_.Unload(Form::frmMain); }});
  EXPECT_EQ(events_, (Events{"Form_Load", "Form_Activate", "Form_QueryUnload"}));
  EXPECT_FALSE(main_->isVisible());
  windows_.End();
  windows_.UnloadMain();
  EXPECT_EQ(events_.back(), "Form_QueryUnload");
  EXPECT_EQ(events_.size(), 3u);
}

TEST_F(WindowsTest, ClosingByTheUserIsAnUnload) {
  Run({[&] { windows_.Show(Form::frmLog); },
       [&] {
         log_->close();
         EXPECT_EQ(windows_.Window(Form::frmLog), nullptr);
       },
       [&] { main_->close(); }});
  EXPECT_EQ(std::count(events_.begin(), events_.end(), "Form_QueryUnload"), 1);
  EXPECT_EQ(events_.back(), "Form_QueryUnload");
  EXPECT_TRUE(windows_.Ended());
}

TEST_F(WindowsTest, ShowAfterUnloadInOneHandlerIsAReload) {
  Run({[&] {
         windows_.Unload(Form::frmMain);
         EXPECT_EQ(events_.back(), "Form_QueryUnload");
         // The system may go down behind a box of the load.
         OnLoad = [&] {
           windows_.Hide(Form::frmMain);
           EXPECT_FALSE(main_->isVisible());
         };
         windows_.Show(Form::frmMain);
         EXPECT_EQ(events_.back(), "Form_Load");
       },
       [&] { EXPECT_EQ(events_.back(), "Form_Activate"); }, [&] { windows_.End(); }});
  EXPECT_EQ(events_, (Events{"Form_Load", "Form_Activate", "Form_QueryUnload", "Form_Load",
                             "Form_Activate", "Form_QueryUnload"}));
}

TEST_F(WindowsTest, FormsAreMadeOnceAndAnewAfterTheirUnload) {
  QPointer<QWidget> first;
  Run({[&] {
         windows_.Unload(Form::frmLog);
         windows_.Show(Form::frmAbout);  // nobody makes it
         windows_.Show(Form::frmLog);
         first = log_;
         windows_.Show(Form::frmLog);
         EXPECT_EQ(log_, first);
         EXPECT_TRUE(log_->isVisible());
         windows_.Hide(Form::frmLog);
         EXPECT_FALSE(log_->isVisible());
         windows_.Show(Form::frmLog);
         EXPECT_EQ(log_, first);
         windows_.Unload(Form::frmLog);
         EXPECT_TRUE(first) << "deleted under its own handler";
         windows_.Show(Form::frmLog);
         EXPECT_NE(log_, first);
       },
       [&] {
         EXPECT_FALSE(first);
         windows_.End();
       }});
  EXPECT_FALSE(log_->isVisible());
}

TEST_F(WindowsTest, FormOutlivesItsHandlerThatABoxHolds) {
  Run({[&] {
    windows_.Show(Form::frmLog);
    // What a click in the form does.
    QTimer::singleShot(0, log_, [this] {
      const QPointer<QWidget> form = log_;
      QMessageBox box;
      QTimer::singleShot(0, [this] { windows_.Unload(Form::frmLog); });
      QTimer::singleShot(20, &box, &QMessageBox::reject);
      box.exec();
      EXPECT_TRUE(form) << "deleted while its handler waits";
      windows_.End();
    });
  }});
}

TEST_F(WindowsTest, EndInTheMiddleOfTheLoadUnloadsAtItsEnd) {
  OnLoad = [this] {
    QMessageBox box;
    QTimer::singleShot(0, [this] { windows_.End(); });
    box.exec();
    EXPECT_EQ(events_, Events{"Form_Load"});
  };
  EXPECT_FALSE(windows_.LoadMain());
  EXPECT_TRUE(windows_.Ended());
  EXPECT_EQ(events_, (Events{"Form_Load", "Form_QueryUnload"}));
}

TEST_F(WindowsTest, EndBeforeTheLoadLeavesNothingBehind) {
  windows_.End();
  EXPECT_FALSE(windows_.LoadMain());
  EXPECT_EQ(events_, Events{});
}

TEST_F(WindowsTest, SecondInstanceEndsWithoutAnUnload) {
  loads_ = false;
  EXPECT_FALSE(windows_.LoadMain());
  EXPECT_TRUE(windows_.Ended());
  EXPECT_EQ(events_, Events{"Form_Load"});
}

TEST_F(WindowsTest, CenterFormTakesTheMiddleOfTheScreen) {
  QWidget window;
  window.setFixedSize(300, 100);
  CenterForm(window);
  const QRect screen = window.screen()->availableGeometry();
  EXPECT_EQ(window.x() - screen.x(), (screen.width() - 300) / 2);
  EXPECT_EQ(window.y() - screen.y(), (screen.height() - 100) / 2);
}

}  // namespace
}  // namespace orvane::test
