#include "dial/reply_buffer.h"

#include <gtest/gtest.h>

namespace orvane::test {
namespace {

TEST(ReplyBufferTest, ShowsTheBeginningAndSplitsNoCharacter) {
  constexpr std::size_t kShown = ReplyBuffer::kShown;
  const std::string filler(kShown, 'a');
  const struct {
    const char* name;
    std::string reply;
    std::size_t shown;
  } cases[] = {
      {"one too many", filler + "b", kShown},
      {"character over the end", filler.substr(1) + "正", kShown - 1},
      {"character ends at the end", filler.substr(3) + "正b", kShown},
      {"no characters at all", std::string(kShown * 2, '\x80'), kShown},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    ReplyBuffer reply;
    reply.Append(c.reply);
    reply.Append("more");
    EXPECT_EQ(reply.Shown(), c.reply.substr(0, c.shown));
  }
}

}  // namespace
}  // namespace orvane::test
