#include "companion/report.h"

#include <gtest/gtest.h>

namespace orvane::companion {
namespace {

std::string Times(std::string_view text, int count) {
  std::string all;
  for (int i = 0; i < count; ++i) all += text;
  return all;
}

TEST(FitTextTest, CutsBetweenCharactersAndMendsTheRest) {
  const std::pair<std::string, std::string> cases[] = {
      {Times("a", 120), Times("a", 99)},      {"a" + Times("文", 40), "a" + Times("文", 32)},
      {Times("a", 97) + "😀", Times("a", 97)}, {"one\ntwo\tthree\r", "one two three "},
      {"caf\xE9 open", "caf\uFFFD open"},     {"a\xE6\x96", "a\uFFFD\uFFFD"},
      {"\xC0\xAF", "\uFFFD\uFFFD"},            // an overlong slash
      {"\xED\xA0\x80", "\uFFFD\uFFFD\uFFFD"},  // half of a surrogate pair
  };
  for (const auto& [text, fitted] : cases) EXPECT_EQ(FitText(text), fitted);
}

TEST(FitTextTest, OfALongPathTheEndIsKept) {
  EXPECT_EQ(FitPath("/home/li/文件.odt"), "/home/li/文件.odt");
  EXPECT_EQ(FitPath("/home/" + Times("d", 100) + "/letter.odt"),
            "..." + Times("d", 85) + "/letter.odt");
  // 96 bytes are left behind the points, and 3 x 32 of them are taken.
  EXPECT_EQ(FitPath(Times("文", 50)), "..." + Times("文", 32));
  EXPECT_EQ(FitPath(Times("文", 50) + "a"), "..." + Times("文", 31) + "a");
}

TEST(ReportTest, TellsOfClosedAndOpenApplications) {
  const std::vector<Application> applications = {
      {"  \"Letter\" - Editor ", {}, true, {"/home/li/letter.odt", "/home/li/信.odt"}},
      {"Stubborn", {}, false, {"/home/li/draft"}},
      {"播放器", {}, true, {}},
  };
  EXPECT_EQ(ReportText(applications),
            "[Main]\r\nShowMsg=1\r\nAppNumber=2\r\nApp0=Application0\r\nApp1=Application2\r\n"
            "OpenNumber=1\r\nOpen0=Application1\r\n\r\n"
            "[Application0]\r\nTitle=\"  \"Letter\" - Editor \"\r\nFileNumber=2\r\n"
            "File0=/home/li/letter.odt\r\nFile1=/home/li/信.odt\r\n\r\n"
            "[Application1]\r\nTitle=Stubborn\r\nFileNumber=1\r\nFile0=/home/li/draft\r\n\r\n"
            "[Application2]\r\nTitle=播放器\r\nFileNumber=0\r\n");
}

}  // namespace
}  // namespace orvane::companion
