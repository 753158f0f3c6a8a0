#include "platform/utf8.h"

#include <gtest/gtest.h>

namespace orvane::test {
namespace {

TEST(WholeCharactersTest, CutsBetweenCharacters) {
  const std::tuple<const char*, std::size_t, const char*> cases[] = {
      {"abc", 3, "abc"},
      {"abc", 0, ""},
      {"a正b", 2, "a"},
      {"a正b", 3, "a"},
      {"a正b", 4, "a正"},
      {"正", 2, ""},
      {"\xF0\x9F\x94\x8B.", 3, ""},
      {"\xF0\x9F\x94\x8B.", 4, "\xF0\x9F\x94\x8B"},
      // No characters at all.
      {"+\x80\x80\x80\x80\x80", 5, "+\x80\x80\x80\x80"},
  };
  for (const auto& [text, limit, cut] : cases) EXPECT_EQ(WholeCharacters(text, limit), cut);
}

}  // namespace
}  // namespace orvane::test
