#include "platform/profile.h"

#include <gtest/gtest.h>

#include "support/memory_disk.h"

namespace orvane::test {
namespace {

using std::string_literals::operator""s;

constexpr const char* kPath = "/prog/systimer.ini";

TEST(ProfileFile, ReadsWhatPeopleWrite) {
  struct Case {
    const char* name;
    std::string text;
    std::optional<std::string> value;  // of "1On" in "weekly"
  };
  const Case cases[] = {
      {"no file", "", std::nullopt},
      {"no section", "1On=8:00\n", std::nullopt},
      {"another section", "[Special]\n1On=8:00\n", std::nullopt},
      {"another key", "[weekly]\n11On=8:00\n1Onn=8\n", std::nullopt},
      {"names without regard to case", "[WEEKLY]\n1oN=8:00\n", "8:00"},
      {"blanks round all", " [ weekly ] \n \t1On \t= \t8:00 AM \t\n", "8:00 AM"},
      {"double quotes", "[weekly]\n1On=\" 8:00 \"\n", " 8:00 "},
      {"one pair of two", "[weekly]\n1On='\"8:00\"'\n", "\"8:00\""},
      {"lone quote", "[weekly]\n1On=\"\n", "\""},
      {"unlike quotes", "[weekly]\n1On=\"8:00'\n", "\"8:00'"},
      {"empty value", "[weekly]\n1On=\n", ""},
      {"equals sign in the value", "[weekly]\n1On=a=b\n", "a=b"},
      {"first key wins", "[weekly]\n1On=8:00\n1ON=9:00\n", "8:00"},
      {"first section wins", "[weekly]\n1On=8:00\n[x]\n[Weekly]\n1On=9:00\n", "8:00"},
      {"second of the name is not read", "[weekly]\n[x]\n[weekly]\n1On=9:00\n", std::nullopt},
      {"comments", "[weekly]\n  ; 1On=7:30\n1On=8:00 ;early\n", "8:00 ;early"},
      {"line without equals sign", "[weekly]\n1On\n1On=8:00\n", "8:00"},
      {"words behind a header", "[weekly] the week\n1On=8:00\n", "8:00"},
      {"header that is not closed", "[weekly]\n[Special\n1On=8:00\n", "8:00"},
      {"line ends mixed, the last absent", "[weekly]\n1Off=9\r\n\r1On=8:00", "8:00"},
      {"byte order mark", "\xEF\xBB\xBF[weekly]\r\n1On=8:00\r\n", "8:00"},
      {"noise before", "\0\xFF\xFE=[\n]\n\x01\n[weekly]\n1On=8:00"s, "8:00"},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(ProfileFile::Parse(row.text).Get("weekly", "1On"), row.value);
    EXPECT_EQ(ProfileFile::Parse(row.text).Text(), row.text);
  }
}

TEST(ProfileFile, WritesOneKeyAndNothingElse) {
  struct Case {
    const char* name;
    std::string before;
    std::string after;  // "1On" in "weekly" set to "8:00"
  };
  const Case cases[] = {
      {"empty file", "", "[weekly]\r\n1On=8:00\r\n"},
      {"value replaced", "[weekly]\n1on = 7:00\n2On=9\n", "[weekly]\n1on =8:00\n2On=9\n"},
      {"same value, other spelling", "[weekly]\n1On = '8:00'\n", "[weekly]\n1On = '8:00'\n"},
      {"key added", "[weekly]\n2On=9\n\n;end\n[x]\n", "[weekly]\n2On=9\n1On=8:00\n\n;end\n[x]\n"},
      {"first key", "[weekly]\n;none\n[x]\na=1\n", "[weekly]\n1On=8:00\n;none\n[x]\na=1\n"},
      {"section added", "; mine\n[x]\na=1\n", "; mine\n[x]\na=1\n\n[weekly]\n1On=8:00\n"},
      {"one line without its end", ";mine", ";mine\r\n\r\n[weekly]\r\n1On=8:00\r\n"},
      {"section last, without its end", "[x]\n[weekly]", "[x]\n[weekly]\n1On=8:00\n"},
      {"key last, without its end", "[weekly]\n2On=9", "[weekly]\n2On=9\n1On=8:00\n"},
      {"value last, without its end", "[weekly]\n1On=9", "[weekly]\n1On=8:00"},
      {"first of two", "[weekly]\n1On=7\n1On=6\n[weekly]\n1On=5\n",
       "[weekly]\n1On=8:00\n1On=6\n[weekly]\n1On=5\n"},
      {"noise kept", "\0\xFF\n[weekly]\r1On=\xFE\r\n=\n"s, "\0\xFF\n[weekly]\r1On=8:00\r\n=\n"s},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.name);
    ProfileFile file = ProfileFile::Parse(row.before);
    file.Set("weekly", "1On", "8:00");
    EXPECT_EQ(file.Text(), row.after);
    EXPECT_EQ(file.Get("weekly", "1On"), "8:00");
  }
}

TEST(ProfileFile, EveryValueReadsBackAsItWasSet) {
  for (const std::string& value : {"8:00"s, ""s, " 8:00"s, "8:00\t"s, "\"8:00\""s, "'8:00'"s, "\""s,
                                   "\"' '\""s, ";8:00"s, "[x]"s, "a=b="s, "八点"s, "\0\x01\xFF"s}) {
    SCOPED_TRACE(value);
    ProfileFile file = ProfileFile::Parse("[weekly]\n1On=before\n2On=kept\n");
    file.Set("weekly", "1On", value);
    file.Set("weekly", "3On", value);
    const ProfileFile again = ProfileFile::Parse(file.Text());
    EXPECT_EQ(again.Get("weekly", "1On"), value);
    EXPECT_EQ(again.Get("weekly", "2On"), "kept");
    EXPECT_EQ(again.Get("weekly", "3On"), value);
  }
}

TEST(ProfileFile, NoLineEndGetsIntoAValue) {
  ProfileFile file;
  file.Set("weekly", "1On", "8:00\r\n[x]\r1Off=9\n");
  EXPECT_EQ(file.Text(), "[weekly]\r\n1On=\"8:00 [x] 1Off=9 \"\r\n");
}

TEST(ProfileValues, AreCutBySizeAndNeverInsideACharacter) {
  const ProfileFile file = ProfileFile::Parse(
      "[Main]\nlatin=abcdef\nmixed=ab日月\nfour=\xF0\x9F\x94\x8B.\nnone=+\x80\x80\x80\x80\x80\n");
  const std::tuple<const char*, std::size_t, const char*> cases[] = {
      {"latin", 6, "abcdef"},
      {"latin", 5, "abcde"},
      {"latin", 0, ""},
      {"mixed", 8, "ab日月"},
      {"mixed", 7, "ab日"},
      {"absent", 4, ""},
      {"four", 3, ""},
      {"four", 4, "\xF0\x9F\x94\x8B"},
      {"none", 5, "+\x80\x80\x80\x80"},
  };
  for (const auto& [key, limit, value] : cases) {
    EXPECT_EQ(ReadProfileValue(file, "main", key, limit), value);
  }
}

TEST(ProfileValues, ManyKeysAreOneReplacement) {
  MemoryDisk disk;
  EXPECT_TRUE(WriteProfileValues(disk, "a", {{"1", "x"}, {"2", ""}, {"1", "y"}}, kPath));
  EXPECT_EQ(disk.files[kPath], "[a]\r\n1=y\r\n2=\r\n");
  EXPECT_EQ(disk.replacements, 1);
  disk.refuse_writes = true;
  EXPECT_FALSE(WriteProfileValues(disk, "a", {{"1", "z"}}, kPath));
  EXPECT_EQ(disk.files[kPath], "[a]\r\n1=y\r\n2=\r\n");
}

// There, and not to be read: what it holds must not be lost to a write.
struct UnreadableDisk : MemoryDisk {
  std::optional<std::string> Read(const std::string&) const override { return std::nullopt; }
};

TEST(ProfileValues, FileThatCannotBeReadIsNotWritten) {
  UnreadableDisk disk;
  disk.files[kPath] = "[foreign]\n";
  EXPECT_FALSE(WriteProfileValues(disk, "a", {{"1", "x"}}, kPath));
  EXPECT_EQ(disk.files[kPath], "[foreign]\n");
}

}  // namespace
}  // namespace orvane::test
