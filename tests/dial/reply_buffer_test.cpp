#include "dial/reply_buffer.h"

#include <gtest/gtest.h>

namespace orvane::test {
namespace {

std::string Found(const ReplyBuffer& reply) {
  std::string words;
  if (reply.Contains(ReplyBuffer::kOk)) words += "[OK]";
  if (reply.Contains(ReplyBuffer::kBusy)) words += "[BUSY]";
  if (reply.Contains(ReplyBuffer::kNoCarrier)) words += "[NO CARRIER]";
  if (reply.Contains(ReplyBuffer::kNoDialtone)) words += "[NO DIALTONE]";
  return words;
}

// Every reply byte by byte, and cut in two at every place.
TEST(ReplyBufferTest, WordsAreFoundHoweverTheReplyIsCut) {
  using namespace std::string_literals;
  const struct {
    std::string reply;
    const char* words;
  } cases[] = {
      {"ATDT119;\r\r\nBUSY\r\n\r\nOK\r\n", "[OK][BUSY]"},
      {"NO NO CARRIER", "[NO CARRIER]"},
      {"NO DIALNO DIALTONE", "[NO DIALTONE]"},
      {"ok Ok oK busy no carrier no dialtone", ""},
      {"O K NO  CARRIER NO DIAL TONE B\0USY"s, ""},
      {"\0\xFF\x80OOK\0"s, "[OK]"},
      {std::string(5000, 'O') + "K" + std::string(5000, 'x') + "BUSY", "[OK][BUSY]"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.reply.substr(0, 40));
    ReplyBuffer bytes;
    for (const char byte : c.reply) bytes.Append({&byte, 1});
    EXPECT_EQ(Found(bytes), c.words);
    for (std::size_t cut = 0; cut <= c.reply.size() && cut < 60; ++cut) {
      ReplyBuffer halves;
      halves.Append(std::string_view(c.reply).substr(0, cut));
      halves.Append(std::string_view(c.reply).substr(cut));
      EXPECT_EQ(Found(halves), c.words) << "cut at " << cut;
      EXPECT_EQ(halves.Shown(), bytes.Shown());
    }
  }
}

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
