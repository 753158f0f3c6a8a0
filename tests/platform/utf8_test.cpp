#include "platform/utf8.h"

#include <gtest/gtest.h>

namespace orvane::test {
namespace {

TEST(WholeCharactersTest, CutsBetweenCharacters) {
  const struct {
    const char* text;
    std::size_t limit;
    const char* cut;
  } cases[] = {
      {"", 0, ""},
      {"abc", 3, "abc"},
      {"abc", 2, "ab"},
      {"abc", 0, ""},
      {"a正b", 1, "a"},
      {"a正b", 2, "a"},
      {"a正b", 3, "a"},
      {"a正b", 4, "a正"},
      {"正", 2, ""},
      {"\xF0\x9F\x94\x8B.", 3, ""},
      {"\xF0\x9F\x94\x8B.", 4, "\xF0\x9F\x94\x8B"},
      // No characters at all.
      {"\x80\x80\x80\x80\x80\x80", 5, "\x80\x80\x80\x80\x80"},
      {"\x80\x80", 1, "\x80"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << c.text << ' ' << c.limit);
    EXPECT_EQ(WholeCharacters(c.text, c.limit), c.cut);
  }
}

}  // namespace
}  // namespace orvane::test
