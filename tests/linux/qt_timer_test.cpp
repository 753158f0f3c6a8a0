#include "platform/qt/qt_timer.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <chrono>

namespace orvane::test {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr int kPeriod = 20;

class QtTimerTest : public testing::Test {
 protected:
  QtTimerTest() {
    timer_.Interval(kPeriod);
    timer_.Tick = [this] { ++ticks_; };
  }

  // Lets the timer fall due without serving it.
  static void LetItFallDue() {
    const auto end = steady_clock::now() + milliseconds(2 * kPeriod);
    while (steady_clock::now() < end) {
    }
  }

  // How often it ticks when what is due is served.
  int Serve() {
    const int before = ticks_;
    QCoreApplication::processEvents();
    return ticks_ - before;
  }

  int argc_ = 1;
  char program_[5] = "test";
  char* argv_[2] = {program_, nullptr};
  QCoreApplication application_{argc_, argv_};
  QtTimer timer_;
  int ticks_ = 0;
};

TEST_F(QtTimerTest, EnablingAnEnabledTimerChangesNothing) {
  timer_.Enabled(true);
  LetItFallDue();
  timer_.Enabled(true);
  EXPECT_EQ(Serve(), 1);
  EXPECT_TRUE(timer_.Enabled());
  LetItFallDue();
  EXPECT_EQ(Serve(), 1) << "it ticks on";
}

TEST_F(QtTimerTest, NothingComesAfterDisabling) {
  EXPECT_FALSE(timer_.Enabled());
  timer_.Enabled(true);
  LetItFallDue();
  timer_.Enabled(false);
  EXPECT_EQ(Serve(), 0);
  // A tick that disables its own timer is the last.
  timer_.Tick = [this] {
    ++ticks_;
    timer_.Enabled(false);
  };
  timer_.Enabled(true);
  LetItFallDue();
  EXPECT_EQ(Serve(), 1);
  LetItFallDue();
  EXPECT_EQ(Serve(), 0);
}

TEST_F(QtTimerTest, WholePeriodsStartAnew) {
  timer_.Interval(100000);
  timer_.Enabled(true);
  timer_.Interval(kPeriod);
  LetItFallDue();
  EXPECT_EQ(Serve(), 1);
  LetItFallDue();
  timer_.Interval(100000);
  EXPECT_EQ(Serve(), 0) << "a new interval, and the old one's tick";
  timer_.Interval(kPeriod);
  LetItFallDue();
  timer_.Enabled(false);
  timer_.Interval(100000);
  timer_.Enabled(true);
  EXPECT_EQ(Serve(), 0) << "enabled anew, and the old period's tick";
}

}  // namespace
}  // namespace orvane::test
