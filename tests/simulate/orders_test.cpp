#include "simulate/orders.h"

#include <gtest/gtest.h>

namespace orvane::test {
namespace {

using namespace std::chrono_literals;

TEST(OrderTableTest, WrongOrdersAreRefused) {
  int done = 0;
  OrderTable orders;
  orders.Add("quit", "", [&] { ++done; });
  orders.AddSwitch("mains", "", [&](bool) { ++done; });
  orders.AddNumber("load", 0, 150.5, "", [&](double) { ++done; });
  for (const char* order : {"quit now", "mains maybe", "mainsoff", "load", "load 150.6", "load -1",
                            "load 3x", "load nan"}) {
    EXPECT_NE(orders.Run(order), "") << order;
  }
  EXPECT_EQ(done, 0);
  for (const char* order : {"", " # quit", "  quit\t\r", "mains   off", "load 150.5"}) {
    EXPECT_EQ(orders.Run(order), "") << order;
  }
  EXPECT_EQ(done, 3);
}

TEST(ScriptTest, OrdersComeAtTheirTimes) {
  Script script;
  ASSERT_EQ(script.Read("# a trial\n\n5 mains off\r\n  0.25  load 110 \n5 battery 20\n1 quit"), "");
  EXPECT_EQ(script.Next(), 250ms);
  EXPECT_EQ(script.Take(249ms), std::nullopt);
  for (const char* order : {"load 110", "quit", "mains off", "battery 20"}) {
    EXPECT_EQ(script.Take(script.Next().value_or(0ms)), order);
  }
  EXPECT_EQ(script.Next(), std::nullopt);
  for (const char* bad : {"\n\n3\n", "# x\n\n-1 quit", "\n\n5s quit\n", "\n\nnan quit\n"}) {
    EXPECT_EQ(Script().Read(bad), "line 3: expected \"SECONDS ORDER\"") << bad;
  }
}

}  // namespace
}  // namespace orvane::test
