#include "app/settings.h"

#include <gtest/gtest.h>

#include "support/memory_disk.h"

namespace orvane::test {
namespace {

constexpr const char* kPath = "/prog/Orvane.ini";

TEST(SettingsTest, LineStandsInTheFileToTheByte) {
  MemoryDisk disk;
  disk.files[kPath] = "1,2,3\r\nanother line\r\n";
  State state;
  state.Settings = {2, 30, 0, -5, 0, 2, 30, 1, 3, 110, 1};
  state.PhoneCode = "119";
  ASSERT_TRUE(SaveSettings(disk, kPath, state));
  EXPECT_EQ(disk.files[kPath], "2,30,0,-5,0,2,30,1,3,110,\"119\",1\r\n");
}

// Before each read the slots hold 50 to 60 and the number is "old".
TEST(SettingsTest, ReadingStopsAtTheFirstFault) {
  struct Case {
    const char* name;
    const char* file;
    const char* read;
  };
  const Case cases[] = {
      {"whole", "2,30,0,-5,0,2,30,1,3,110,\"119\",1\r\n", "2,30,0,-5,0,2,30,1,3,110,\"119\",1"},
      {"no line end", "1,2,3,4,5,6,7,8,1,0,\"5\",1", "1,2,3,4,5,6,7,8,1,0,\"5\",1"},
      {"two fields", "1,5\r\n", "1,5,52,53,54,55,56,57,58,59,\"old\",60"},
      {"empty", "", "50,51,52,53,54,55,56,57,58,59,\"old\",60"},
      {"a unit", "1,2s,3\r\n", "1,51,52,53,54,55,56,57,58,59,\"old\",60"},
      {"an empty field", "1,,3\r\n", "1,51,52,53,54,55,56,57,58,59,\"old\",60"},
      {"beyond 16 bits", "1,40000,3\r\n", "1,51,52,53,54,55,56,57,58,59,\"old\",60"},
      {"cut in the number", "1,2,3,4,5,6,7,8,1,0,\"55", "1,2,3,4,5,6,7,8,1,0,\"old\",60"},
      {"cut before the language", "1,2,3,4,5,6,7,8,1,0,\"55\"", "1,2,3,4,5,6,7,8,1,0,\"55\",60"},
      {"comma in the number", "1,2,3,4,5,6,7,8,1,0,\"0,5\",1", "1,2,3,4,5,6,7,8,1,0,\"0,5\",1"},
      {"bare, and blanks", " 1, 2,3,4,5,6,7,8,1,0, 55, 1 ", "1,2,3,4,5,6,7,8,1,0,\"55\",1"},
      {"the first line alone", "7\r\n8,9\r\n", "7,51,52,53,54,55,56,57,58,59,\"old\",60"},
      {"noise", "\x01\xFF\xFE,,\n", "50,51,52,53,54,55,56,57,58,59,\"old\",60"},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.name);
    MemoryDisk disk;
    disk.files["/prog/orvane.INI"] = row.file;
    State state;
    state.Settings = {50, 51, 52, 53, 54, 55, 56, 57, 58, 59, 60};
    state.PhoneCode = "old";
    LoadSettings(disk, kPath, state);
    EXPECT_EQ(SettingsLine(state), row.read + std::string("\r\n"));
  }
}

TEST(SettingsTest, AbsentFileChangesNothingAndCreatesNothing) {
  MemoryDisk disk;
  State state;
  state.Settings[kUpsPort] = 2;
  LoadSettings(disk, kPath, state);
  EXPECT_EQ(state.Settings[kUpsPort], 2);
  EXPECT_TRUE(disk.files.empty());
}

TEST(SettingsTest, DerivedValues) {
  State state;
  EXPECT_EQ(DeriveLanguage(state), Language::kEnglish);
  // Any other number is Chinese; three-digit minutes mean what they say.
  state.Settings = {0, 999, 99, 2, 5, 0, 0, 0, 0, 0, 5};
  EXPECT_EQ(DeriveLanguage(state), Language::kChinese);
  EXPECT_EQ(MainsFailureDelay(state), 60039);
  EXPECT_EQ(BatteryLowDelay(state), 125);
  for (const auto& [delay, command] : {std::pair{0, "S.5"}, {1, "S01"}, {9, "S09"}, {10, "S10"}}) {
    state.Settings[kShutdownDelay] = static_cast<std::int16_t>(delay);
    EXPECT_EQ(DeriveShutdownCommand(state), command);
  }
}

}  // namespace
}  // namespace orvane::test
