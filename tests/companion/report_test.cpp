#include "companion/report.h"

#include <gtest/gtest.h>

#include "platform/profile.h"

namespace orvane::companion {
namespace {

std::string Times(std::string_view text, int count) {
  std::string all;
  for (int i = 0; i < count; ++i) all += text;
  return all;
}

TEST(FitTextTest, CutsBetweenCharactersAndMendsTheRest) {
  struct Case {
    const char* name;
    std::string text;
    std::string fitted;
  };
  const Case cases[] = {
      {"120 bytes", Times("a", 120), Times("a", 99)},
      {"34 Chinese characters", Times("文", 34), Times("文", 33)},
      {"a Chinese character across the limit", "a" + Times("文", 40), "a" + Times("文", 32)},
      {"four bytes across the limit", Times("a", 97) + "😀", Times("a", 97)},
      {"line end and tab", "one\ntwo\tthree\r", "one two three "},
      {"no UTF-8", "caf\xE9 open", "caf\xEF\xBF\xBD open"},
      {"character cut short", "a\xE6\x96", "a\xEF\xBF\xBD\xEF\xBF\xBD"},
      {"overlong slash", "\xC0\xAF", "\xEF\xBF\xBD\xEF\xBF\xBD"},
      {"surrogate", "\xED\xA0\x80", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(FitText(row.text), row.fitted);
  }
}

TEST(FitTextTest, OfALongPathTheEndIsKept) {
  EXPECT_EQ(FitPath("/home/li/文件.odt"), "/home/li/文件.odt");
  EXPECT_EQ(FitPath("/home/" + Times("d", 100) + "/letter.odt"),
            "..." + Times("d", 85) + "/letter.odt");
  // 96 bytes are left behind the points, and 3 x 32 of them are taken.
  EXPECT_EQ(FitPath(Times("文", 50)), "..." + Times("文", 32));
  EXPECT_EQ(FitPath(Times("文", 50) + "a"), "..." + Times("文", 31) + "a");
}

// What the viewer's reads give back.
TEST(ReportTest, IsReadAsItWasMeant) {
  const std::vector<Application> applications = {
      {"  \"Letter\" - Editor ", {}, true, {"/home/li/letter.odt", "/home/li/信.odt"}},
      {"Stubborn", {}, false, {"/home/li/draft"}},
      {"播放器", {}, true, {}},
  };
  const ProfileFile file = ProfileFile::Parse(ReportText(applications));
  const auto read = [&](const std::string& section, const char* key) {
    return GetPrivateProfileString(file, section, key, "", 100);
  };
  EXPECT_EQ(read("Main", "ShowMsg"), "1");
  EXPECT_EQ(read("Main", "AppNumber"), "2");
  EXPECT_EQ(read("Main", "App2"), "");
  EXPECT_EQ(read("Main", "OpenNumber"), "1");
  const std::string editor = read("Main", "App0");
  EXPECT_EQ(read(editor, "Title"), "  \"Letter\" - Editor ");
  EXPECT_EQ(read(editor, "FileNumber"), "2");
  EXPECT_EQ(read(editor, "File0"), "/home/li/letter.odt");
  EXPECT_EQ(read(editor, "File1"), "/home/li/信.odt");
  const std::string player = read("Main", "App1");
  EXPECT_EQ(read(player, "Title"), "播放器");
  EXPECT_EQ(read(player, "FileNumber"), "0");
  const std::string stubborn = read("Main", "Open0");
  EXPECT_EQ(read(stubborn, "Title"), "Stubborn");
  EXPECT_EQ(read(stubborn, "File0"), "/home/li/draft");
}

}  // namespace
}  // namespace orvane::companion
