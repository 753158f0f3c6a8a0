// The schedule's file and tables, and the editors that write both.
#include "schedule/schedule_editor.h"

#include <gtest/gtest.h>

#include <map>

#include "support/world.h"

namespace orvane::test {
namespace {

const std::string kPath = "/prog/systimer.ini";

struct ScheduleEditorTest : testing::Test, World {
  ScheduleEditor Editor(const ScheduleSection& section = kWeekly) {
    forms.open = {Form::kWeek};
    return {section, Form::kWeek, schedule, forms};
  }

  ScheduleFile schedule{state, disk, host};
};

// Every control filled, and the slots that a start reads of the file again.
TEST_F(ScheduleEditorTest, OkWritesItsSectionInOneReplacementAndItsSlotsAndCancelNothing) {
  const auto keys = [](const std::string& key, const std::string& of_odd,
                       const std::string& of_even) {
    std::string lines;
    for (int n = 1; n <= 7; ++n) {
      lines += std::to_string(n) + key + '=' + (n % 2 ? of_odd : of_even) + "\r\n";
    }
    return lines;
  };
  const std::string rows = keys("Enable", "1", "0") + keys("On", "8:00", "on");
  const std::string off = keys("Off", "off", "off");
  const std::string date = keys("Date", "date", "date");
  const std::pair<const ScheduleSection&, std::string> cases[] = {
      {kWeekly, "[weekly]\r\n" + rows + off},
      {kSpecialDays, "[Special]\r\n" + rows + off + date},
      {kSelfTests, "[SelfTestToLow]\r\n" + rows + date}};
  int replacements = 0;
  for (const auto& [section, content] : cases) {
    SCOPED_TRACE(section.name);
    state = {};
    // All else in the file stays.
    const std::string before = disk.files[kPath] = "; mine\r\n[x]\r\n1On = x\r\n";
    ScheduleEditor editor = Editor(section);
    editor.Load();
    for (std::size_t i = 0; i < 7; ++i) {
      editor.rows[i] = {i % 2 == 0, i % 2 ? "on" : "8:00", "off", "date"};
    }
    editor.Save();
    EXPECT_EQ(disk.files[kPath], before + "\r\n" + content);
    EXPECT_EQ(disk.replacements, ++replacements);
    EXPECT_TRUE(forms.open.empty());
    State started;
    LoadSchedule(disk, kPath, started);
    EXPECT_EQ(state.ScheduleEnable[section.on_slots + 7], '1');
    EXPECT_EQ(state.ScheduleOn, started.ScheduleOn);
    EXPECT_EQ(state.ScheduleOff, started.ScheduleOff);
    EXPECT_EQ(state.ScheduleDate, started.ScheduleDate);

    ScheduleEditor again = Editor(section);
    again.Load();
    for (std::size_t i = 0; i < 7; ++i) EXPECT_EQ(again.rows[i].enabled, i % 2 == 0);
    EXPECT_EQ(again.rows[1].on, "on");
    EXPECT_EQ(again.rows[6].off, section.off_slots ? "off" : "");
    EXPECT_EQ(again.rows[6].date, section.date_slots ? "date" : "");
    again.rows[0] = {false, "9:00", "", ""};
    again.Cancel();
    EXPECT_EQ(disk.files[kPath], before + "\r\n" + content);
    EXPECT_EQ(state.ScheduleOn, started.ScheduleOn);
    EXPECT_TRUE(forms.open.empty());
  }
}

TEST_F(ScheduleEditorTest, FileThatCannotBeWrittenStillCountsForThisRun) {
  disk.refuse_writes = true;
  ScheduleEditor editor = Editor();
  editor.rows[0].on = "8:00";
  editor.Save();
  EXPECT_EQ(state.ScheduleOn[kWeekly.on_slots + 1], "8:00");
  EXPECT_EQ(host.reports.size(), 1u);
  EXPECT_TRUE(forms.open.empty());
}

TEST_F(ScheduleEditorTest, CheckBoxShowsWhatEnableSays) {
  const std::map<std::string, bool> cases = {{"1", true},  {"0", false}, {"", false},
                                             {"10", true}, {"01", true}, {"2", false},
                                             {"1x", true}, {"-1", false}};
  for (const auto& [text, set] : cases) {
    disk.files[kPath] = "[weekly]\n4Enable=" + text + "\n";
    ScheduleEditor editor = Editor();
    editor.Load();
    EXPECT_EQ(editor.rows[3].enabled, set) << text;
  }
}

TEST_F(ScheduleEditorTest, OddTextsAreTakenAsTheyReadAndAbsentOnesAreBlank) {
  disk.files[kPath] = "[WEEKLY]\r1enable = 10\r2ENABLE=01\r1on=" + std::string(1023, '8') + "日\r";
  LoadSchedule(disk, kPath, state);
  EXPECT_EQ(state.ScheduleEnable[1], '1');
  EXPECT_EQ(state.ScheduleEnable[2], '0');
  EXPECT_EQ(state.ScheduleEnable[3], ' ');
  EXPECT_EQ(state.ScheduleOn[1], std::string(1023, '8'));
  EXPECT_EQ(state.ScheduleOn[3], "");
}

}  // namespace
}  // namespace orvane::test
