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

struct WordCase {
  std::string reply;
  std::string words;
};

// Every reply in one piece, byte by byte, and cut in two at every place.
TEST(ReplyBufferTest, WordsAreFoundHoweverTheReplyIsCut) {
  using namespace std::string_literals;
  const WordCase cases[] = {
      {"", ""},
      {"\r\nOK\r\n", "[OK]"},
      {"ATDT119;\r\r\nBUSY\r\n\r\nOK\r\n", "[OK][BUSY]"},
      {"BUSY", "[BUSY]"},
      {"NO CARRIER", "[NO CARRIER]"},
      {"\r\nNO DIALTONE\r\n", "[NO DIALTONE]"},
      {"NO NO CARRIER", "[NO CARRIER]"},
      {"NO DIALNO DIALTONE", "[NO DIALTONE]"},
      {"OOK", "[OK]"},
      {"ok Ok oK busy no carrier no dialtone", ""},
      {"O K NO  CARRIER NO DIAL TONE B\0USY"s, ""},
      {"\0\xFF\x80OK\0"s, "[OK]"},
      {std::string(5000, 'O') + "K" + std::string(5000, 'x') + "BUSY", "[OK][BUSY]"},
  };
  for (const WordCase& c : cases) {
    SCOPED_TRACE(c.reply.substr(0, 40));
    ReplyBuffer whole;
    whole.Append(c.reply);
    EXPECT_EQ(Found(whole), c.words);
    ReplyBuffer bytes;
    for (char byte : c.reply) bytes.Append({&byte, 1});
    EXPECT_EQ(Found(bytes), c.words);
    EXPECT_EQ(bytes.Shown(), whole.Shown());
    for (std::size_t cut = 0; cut <= c.reply.size() && cut < 60; ++cut) {
      ReplyBuffer halves;
      halves.Append(std::string_view(c.reply).substr(0, cut));
      halves.Append(std::string_view(c.reply).substr(cut));
      EXPECT_EQ(Found(halves), c.words) << "cut at " << cut;
    }
  }
}

TEST(ReplyBufferTest, ShowsTheBeginningAndSplitsNoCharacter) {
  constexpr std::size_t kShown = ReplyBuffer::kShown;
  struct Case {
    const char* name;
    std::string reply;
    std::size_t shown;
  };
  const std::string filler(kShown, 'a');
  const Case cases[] = {
      {"just fits", filler, kShown},
      {"one too many", filler + "b", kShown},
      {"character over the end", filler.substr(1) + "正", kShown - 1},
      {"character ends at the end", filler.substr(3) + "正b", kShown},
      {"character begins behind the end", filler + "正", kShown},
      {"no characters at all", std::string(kShown * 2, '\x80'), kShown},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    ReplyBuffer reply;
    reply.Append(c.reply);
    EXPECT_EQ(reply.Shown(), c.reply.substr(0, c.shown));
    reply.Append("more");
    EXPECT_EQ(reply.Shown(), c.reply.size() > kShown ? c.reply.substr(0, c.shown) : c.reply);
  }
}

TEST(ReplyBufferTest, ClearForgetsWordsAndTheirBeginnings) {
  ReplyBuffer reply;
  reply.Append("OK NO CARRIE");
  reply.Clear();
  reply.Append("R");
  EXPECT_EQ(Found(reply), "");
  EXPECT_EQ(reply.Shown(), "R");
}

}  // namespace
}  // namespace orvane::test
