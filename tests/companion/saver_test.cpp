#include "companion/saver.h"

#include <gtest/gtest.h>

namespace orvane::companion {
namespace {

TEST(PatienceTest, LeavesTheSystemItsShareOfTheDelay) {
  const std::pair<int, int> cases[] = {{0, 15}, {1, 31}, {10, 31}, {-3, 15}, {32767, 31}};
  for (const auto& [delay, patience] : cases) {
    EXPECT_EQ(PatienceFor(delay).count(), patience) << delay;
  }
}

}  // namespace
}  // namespace orvane::companion
