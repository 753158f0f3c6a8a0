// The schedule's file and tables, and the editors that write both.
#include "schedule/schedule_editor.h"

#include <gtest/gtest.h>

#include <map>

#include "support/world.h"

namespace orvane::test {
namespace {

const std::string kPath = "/prog/systimer.ini";

class ScheduleEditorTest : public testing::TestWithParam<int>, public World {
 protected:
  struct Kind {
    ScheduleSection section;
    Form form;
    std::string content;  // of the section, with every control filled by Fill
  };

  ScheduleEditorTest() {
    const auto keys = [](const char* suffix, int first) {
      std::string lines;
      for (int n = 0; n < 7; ++n) {
        lines += std::to_string(n + 1) + suffix + std::to_string(first + n) + "\r\n";
      }
      return lines;
    };
    const std::string rows =
        "1Enable=1\r\n2Enable=0\r\n3Enable=1\r\n4Enable=0\r\n5Enable=1\r\n6Enable=0\r\n"
        "7Enable=1\r\n" +
        keys("On=t", 0);
    const Kind kinds[] = {
        {kWeekly, Form::kWeek, "[weekly]\r\n" + rows + keys("Off=t", 7)},
        {kSpecialDays, Form::kSpecialDays,
         "[Special]\r\n" + rows + keys("Off=t", 7) + keys("Date=t", 14)},
        {kSelfTests, Form::kSelfTests, "[SelfTestToLow]\r\n" + rows + keys("Date=t", 14)},
    };
    kind = kinds[GetParam()];
    forms.open = {kind.form};
  }

  ScheduleEditor Editor() { return {kind.section, kind.form, state, seams}; }

  static void Fill(ScheduleEditor& editor) {
    const auto text = [](std::size_t number) { return "t" + std::to_string(number); };
    for (std::size_t i = 0; i < 7; ++i) {
      editor.rows[i] = {i % 2 == 0, text(i), text(7 + i), text(14 + i)};
    }
  }

  Kind kind;
};

TEST_P(ScheduleEditorTest, OkWritesItsSectionInOneReplacementAndItsSlotsAndCancelNothing) {
  ScheduleEditor editor = Editor();
  editor.Load();
  Fill(editor);
  editor.Save();
  EXPECT_EQ(disk.files[kPath], kind.content);
  EXPECT_EQ(disk.replacements, 1);
  EXPECT_TRUE(forms.open.empty());

  State started;
  LoadSchedule(disk, kPath, started);
  for (std::size_t slot = 1; slot <= 21; ++slot) {
    const bool ours = slot > kind.section.on_slots && slot <= kind.section.on_slots + 7;
    EXPECT_EQ(state.ScheduleEnable[slot], ours ? started.ScheduleEnable[slot] : '\0');
  }
  EXPECT_EQ(state.ScheduleOn, started.ScheduleOn);
  EXPECT_EQ(state.ScheduleOff, started.ScheduleOff);
  EXPECT_EQ(state.ScheduleDate, started.ScheduleDate);

  ScheduleEditor again = Editor();
  again.Load();
  for (std::size_t i = 0; i < 7; ++i) EXPECT_EQ(again.rows[i].enabled, i % 2 == 0);
  EXPECT_EQ(again.rows[0].on, "t0");
  EXPECT_EQ(again.rows[6].off, kind.section.off_slots ? "t13" : "");
  EXPECT_EQ(again.rows[6].date, kind.section.date_slots ? "t20" : "");
  forms.open = {kind.form};
  again.rows[0] = {false, "8:00", "", ""};
  again.Cancel();
  EXPECT_EQ(disk.files[kPath], kind.content);
  EXPECT_EQ(state.ScheduleOn, started.ScheduleOn);
  EXPECT_TRUE(forms.open.empty());
}

TEST_P(ScheduleEditorTest, OkLeavesAllElseInTheFileAlone) {
  disk.files[kPath] = "; mine\n[weekly2]\n1On=x\n[extra]\nkey = value\n";
  for (const ScheduleSection& section : {kWeekly, kSpecialDays, kSelfTests}) {
    if (section.name == kind.section.name) continue;
    disk.files[kPath] += "[" + std::string(section.name) + "]\n1On=8:00\n9Foreign= 1 \n";
  }
  const std::string before = disk.files[kPath];
  ScheduleEditor editor = Editor();
  editor.Load();
  editor.Save();
  EXPECT_TRUE(disk.files[kPath].starts_with(before));
  // Every key of the section stands there now, empty ones too.
  EXPECT_NE(disk.files[kPath].find("\n7Enable=0\n1On=\n"), std::string::npos);
}

TEST_P(ScheduleEditorTest, FileThatCannotBeWrittenStillCountsForThisRun) {
  disk.refuse_writes = true;
  ScheduleEditor editor = Editor();
  Fill(editor);
  editor.Save();
  EXPECT_EQ(state.ScheduleOn[kind.section.on_slots + 1], "t0");
  EXPECT_EQ(host.reports.size(), 1u);
  EXPECT_TRUE(forms.open.empty());
}

INSTANTIATE_TEST_SUITE_P(WeekSpecialSelfTest, ScheduleEditorTest, testing::Range(0, 3));

TEST(ScheduleEditor, CheckBoxShowsWhatEnableSays) {
  World world;
  const std::map<std::string, bool> cases = {{"1", true},  {"0", false}, {"", false},
                                             {"10", true}, {"01", true}, {"2", false},
                                             {"1x", true}, {"-1", false}};
  for (const auto& [text, set] : cases) {
    world.disk.files[kPath] = "[weekly]\n4Enable=" + text + "\n";
    ScheduleEditor editor{kWeekly, Form::kWeek, world.state, world.seams};
    editor.Load();
    EXPECT_EQ(editor.rows[3].enabled, set) << text;
  }
}

TEST(ScheduleEditor, TellsASlipByTheKindOfItsBox) {
  using Row = ScheduleEditor::Row;
  EXPECT_TRUE(ScheduleEditor::Reads(&Row::off, "8:00 pm"));
  EXPECT_TRUE(ScheduleEditor::Reads(&Row::date, "2001-5-1"));
  EXPECT_TRUE(ScheduleEditor::Reads(&Row::date, " "));
  EXPECT_FALSE(ScheduleEditor::Reads(&Row::on, "2001-5-1"));
  EXPECT_FALSE(ScheduleEditor::Reads(&Row::date, "8:00"));
}

TEST(ScheduleTables, OddTextsAreTakenAsTheyReadAndAbsentOnesAreBlank) {
  World world;
  world.disk.files[kPath] =
      "[WEEKLY]\r1enable = 10\r2ENABLE=01\r1on=" + std::string(1023, '8') + "日\r";
  LoadSchedule(world.disk, kPath, world.state);
  EXPECT_EQ(world.state.ScheduleEnable[1], '1');
  EXPECT_EQ(world.state.ScheduleEnable[2], '0');
  EXPECT_EQ(world.state.ScheduleEnable[3], ' ');
  EXPECT_EQ(world.state.ScheduleOn[1], std::string(1023, '8'));
  EXPECT_EQ(world.state.ScheduleOn[3], "");
}

}  // namespace
}  // namespace orvane::test
