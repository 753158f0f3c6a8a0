// The lines of a journal, against a plain reading from the first byte to the last.
#include "records/log_index.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace orvane::test {
namespace {

std::vector<std::string> PlainLines(std::string_view bytes) {
  std::vector<std::string> lines;
  while (!bytes.empty()) {
    const std::size_t end = bytes.find("\r\n");
    lines.emplace_back(bytes.substr(0, end));
    bytes.remove_prefix(end == std::string_view::npos ? bytes.size() : end + 2);
  }
  return lines;
}

std::vector<std::string> IndexedLines(std::string_view bytes) {
  const LogIndex index(bytes);
  std::vector<std::string> lines;
  for (std::size_t i = 0; i < index.Lines(); ++i) lines.emplace_back(index.Line(i));
  return lines;
}

TEST(LogIndex, EndsLinesAtCarriageReturnAndLineFeedAlone) {
  const struct {
    const char* bytes;
    std::vector<std::string> lines;
  } cases[] = {{"", {}},
               {"\r\n", {""}},
               {"\"\na\"\r\n\r\n\"\nb\"\r\n", {"\"\na\"", "", "\"\nb\""}},
               {"a\r\nb", {"a", "b"}},
               {"a\nb\rc\n", {"a\nb\rc\n"}},
               {"a\r\r\n\n\r", {"a\r", "\n\r"}}};
  for (const auto& c : cases) EXPECT_EQ(IndexedLines(c.bytes), c.lines) << '{' << c.bytes << '}';
}

// Line ends at every place in and across the blocks that the index looks at.
TEST(LogIndex, FindsEveryLineOfALargeFile) {
  std::mt19937 random(20010216);
  for (const std::size_t longest : {3, 60, 700, 10000}) {
    std::uniform_int_distribution<std::size_t> length(0, longest);
    std::uniform_int_distribution<std::size_t> piece(0, 5);
    const char* const pieces[] = {"\r\n", "\r\n", "\n", "\r", "\r\n", ""};
    std::string bytes;
    while (bytes.size() < 20'000) {
      bytes += std::string(length(random), 'x');
      bytes += pieces[piece(random)];
    }
    for (std::size_t cut = 0; cut < 3; ++cut) {
      bytes.pop_back();
      ASSERT_EQ(IndexedLines(bytes), PlainLines(bytes)) << "longest " << longest << " cut " << cut;
    }
  }
}

}  // namespace
}  // namespace orvane::test
