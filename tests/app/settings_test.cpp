#include "app/settings.h"

#include <gtest/gtest.h>

#include "support/memory_disk.h"

namespace orvane::test {
namespace {

constexpr const char* kPath = "/prog/Orvane.ini";
constexpr const char* kExample = "2,30,0,5,0,2,30,1,3,110,\"119\",1\r\n";

State Example() {
  State state;
  state.Settings = {2, 30, 0, 5, 0, 2, 30, 1, 3, 110, 1};
  state.PhoneCode = "119";
  return state;
}

TEST(SettingsTest, LineStandsInTheFileToTheByte) {
  MemoryDisk disk;
  disk.files[kPath] = "1,2,3\r\nanother line\r\n";
  ASSERT_TRUE(SaveSettings(disk, kPath, Example()));
  EXPECT_EQ(disk.files[kPath], kExample);
  ASSERT_TRUE(SaveSettings(disk, kPath, Example()));
  EXPECT_EQ(disk.files[kPath], kExample);

  State state;
  state.Settings[9] = 1;
  state.Settings[3] = -5;
  EXPECT_EQ(SettingsLine(state), "0,0,0,-5,0,0,0,0,0,1,\"\",0\r\n");
}

struct ReadCase {
  const char* name;
  const char* file;
  std::array<std::int16_t, 11> slots;
  const char* phone;
};

// Before each read the slots hold 50 to 60 and the number is "old".
const ReadCase kReads[] = {
    {"whole", kExample, {2, 30, 0, 5, 0, 2, 30, 1, 3, 110, 1}, "119"},
    {"no line end", "1,2,3,4,5,6,7,8,1,0,\"5\",1", {1, 2, 3, 4, 5, 6, 7, 8, 1, 0, 1}, "5"},
    {"two fields", "1,5\r\n", {1, 5, 52, 53, 54, 55, 56, 57, 58, 59, 60}, "old"},
    {"empty", "", {50, 51, 52, 53, 54, 55, 56, 57, 58, 59, 60}, "old"},
    {"a word among the numbers", "1,x,3\r\n", {1, 51, 52, 53, 54, 55, 56, 57, 58, 59, 60}, "old"},
    {"an empty field", "1,,3\r\n", {1, 51, 52, 53, 54, 55, 56, 57, 58, 59, 60}, "old"},
    {"beyond 16 bits", "1,40000,3\r\n", {1, 51, 52, 53, 54, 55, 56, 57, 58, 59, 60}, "old"},
    {"cut in the number", "1,2,3,4,5,6,7,8,1,0,\"55", {1, 2, 3, 4, 5, 6, 7, 8, 1, 0, 60}, "old"},
    {"cut before the language",
     "1,2,3,4,5,6,7,8,1,0,\"55\"",
     {1, 2, 3, 4, 5, 6, 7, 8, 1, 0, 60},
     "55"},
    {"comma in the number",
     "1,2,3,4,5,6,7,8,1,0,\"0,55\",1\r\n",
     {1, 2, 3, 4, 5, 6, 7, 8, 1, 0, 1},
     "0,55"},
    {"bare number", "1,2,3,4,5,6,7,8,1,0,55,1\r\n", {1, 2, 3, 4, 5, 6, 7, 8, 1, 0, 1}, "55"},
    {"blanks", " 1, 2,3,4,5,6,7,8,1,0, \"55\" , 1 \r\n", {1, 2, 3, 4, 5, 6, 7, 8, 1, 0, 1}, "55"},
    {"the first line alone", "7\r\n8,9\r\n", {7, 51, 52, 53, 54, 55, 56, 57, 58, 59, 60}, "old"},
    {"noise", "\x01\xFF\xFE,,\n", {50, 51, 52, 53, 54, 55, 56, 57, 58, 59, 60}, "old"},
};

TEST(SettingsTest, ReadingStopsAtTheFirstFault) {
  for (const ReadCase& row : kReads) {
    SCOPED_TRACE(row.name);
    MemoryDisk disk;
    disk.files["/prog/orvane.INI"] = row.file;
    State state;
    for (std::size_t i = 0; i < state.Settings.size(); ++i) {
      state.Settings[i] = static_cast<std::int16_t>(50 + i);
    }
    state.PhoneCode = "old";
    LoadSettings(disk, kPath, state);
    EXPECT_EQ(state.Settings, row.slots);
    EXPECT_EQ(state.PhoneCode, row.phone);
  }
}

TEST(SettingsTest, AbsentFileChangesNothingAndCreatesNothing) {
  MemoryDisk disk;
  State state = Example();
  LoadSettings(disk, kPath, state);
  EXPECT_EQ(SettingsLine(state), kExample);
  EXPECT_TRUE(disk.files.empty());
}

TEST(SettingsTest, DerivedValues) {
  struct Case {
    std::int16_t delay;
    const char* command;
  };
  for (const Case& row :
       {Case{0, "S.5"}, Case{1, "S01"}, Case{3, "S03"}, Case{9, "S09"}, Case{10, "S10"}}) {
    State state;
    state.Settings[kShutdownDelay] = row.delay;
    EXPECT_EQ(DeriveShutdownCommand(state), row.command);
  }
  State state;
  EXPECT_EQ(DeriveResBase(state), 0);
  state.Settings[kLanguage] = 5;
  EXPECT_EQ(DeriveResBase(state), 1000);
  // Three-digit minutes mean what they say.
  state.Settings[kMainsMinutes] = 999;
  state.Settings[kMainsSeconds] = 99;
  EXPECT_EQ(MainsFailureDelay(state), 60039);
  state.Settings[kLowMinutes] = 2;
  state.Settings[kLowSeconds] = 5;
  EXPECT_EQ(BatteryLowDelay(state), 125);
}

}  // namespace
}  // namespace orvane::test
