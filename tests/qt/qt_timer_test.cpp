#include "platform/qt/qt_timer.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <chrono>

namespace orvane::test {
namespace {

TEST(QtTimerTest, WholePeriodsOnly) {
  constexpr int kPeriod = 20;
  QtTimer timer;
  int ticks = 0;
  timer.Tick = [&] { ++ticks; };
  const auto let_it_fall_due = [] {
    using std::chrono::steady_clock;
    const auto end = steady_clock::now() + std::chrono::milliseconds(2 * kPeriod);
    while (steady_clock::now() < end) {
    }
  };
  // How often it ticks when what is due is served.
  const auto serve = [&] {
    ticks = 0;
    QCoreApplication::processEvents();
    return ticks;
  };
  timer.Interval(100000);
  timer.Enabled(true);
  timer.Interval(kPeriod);
  let_it_fall_due();
  timer.Enabled(true);
  EXPECT_EQ(serve(), 1) << "enabling an enabled timer changes nothing";
  let_it_fall_due();
  timer.Interval(100000);
  EXPECT_EQ(serve(), 0) << "a new interval, and the old one's tick";
  timer.Interval(kPeriod);
  let_it_fall_due();
  timer.Enabled(false);
  EXPECT_EQ(serve(), 0);
}

}  // namespace
}  // namespace orvane::test
