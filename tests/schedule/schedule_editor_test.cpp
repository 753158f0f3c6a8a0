#include "schedule/schedule_editor.h"

#include <gtest/gtest.h>

#include "support/world.h"

namespace orvane::test {
namespace {

const std::string kPath = "/prog/systimer.ini";

constexpr const char* kEnables =
    "1Enable=1\r\n2Enable=0\r\n3Enable=1\r\n4Enable=0\r\n5Enable=1\r\n6Enable=0\r\n7Enable=1\r\n";
constexpr const char* kOns =
    "1On=t0\r\n2On=t1\r\n3On=t2\r\n4On=t3\r\n5On=t4\r\n6On=t5\r\n7On=t6\r\n";
constexpr const char* kOffs =
    "1Off=t7\r\n2Off=t8\r\n3Off=t9\r\n4Off=t10\r\n5Off=t11\r\n6Off=t12\r\n7Off=t13\r\n";
constexpr const char* kDates =
    "1Date=t14\r\n2Date=t15\r\n3Date=t16\r\n4Date=t17\r\n5Date=t18\r\n6Date=t19\r\n7Date=t20\r\n";

class ScheduleEditorTest : public testing::TestWithParam<int>, public World {
 protected:
  struct Editor {
    ScheduleSection section;
    Form form;
    std::string content;  // of the section, with every control filled by Fill
  };

  ScheduleEditorTest() {
    const std::string enables = kEnables;
    const Editor editors[] = {
        {kWeekly, Form::frmWeek, "[weekly]\r\n" + enables + kOns + kOffs},
        {kSpecialDays, Form::frmSpecial, "[Special]\r\n" + enables + kOns + kOffs + kDates},
        {kSelfTests, Form::frmSelfTest, "[SelfTestToLow]\r\n" + enables + kOns + kDates},
    };
    kind = editors[GetParam()];
    forms.open = {kind.form};
  }

  static void Fill(ScheduleEditor& editor) {
    for (std::size_t i = 0; i < 7; ++i) editor.Check1[i] = i % 2 == 0;
    for (std::size_t i = 0; i < 21; ++i) editor.txtTime[i] = "t" + std::to_string(i);
  }

  Editor kind;
};

TEST_P(ScheduleEditorTest, OkWritesItsSectionInOneReplacementAndItsSlots) {
  ScheduleEditor editor{kind.section, kind.form, state, seams};
  editor.Form_Load();
  Fill(editor);
  editor.cmdEnter_Click();
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

  ScheduleEditor again{kind.section, kind.form, state, seams};
  again.Form_Load();
  EXPECT_EQ(again.Check1, editor.Check1);
  EXPECT_EQ(again.txtTime[0], "t0");
  EXPECT_EQ(again.txtTime[13], kind.section.off_slots ? "t13" : "");
  EXPECT_EQ(again.txtTime[20], kind.section.date_slots ? "t20" : "");
}

TEST_P(ScheduleEditorTest, OkLeavesAllElseInTheFileAlone) {
  const std::string foreign = "; mine\n[weekly2]\n1On=x\n[extra]\nkey = value\n";
  disk.files[kPath] = foreign;
  for (const ScheduleSection& section : {kWeekly, kSpecialDays, kSelfTests}) {
    if (section.name == kind.section.name) continue;
    disk.files[kPath] += "[" + std::string(section.name) + "]\n1On=8:00\n9Foreign= 1 \n";
  }
  const std::string before = disk.files[kPath];
  ScheduleEditor editor{kind.section, kind.form, state, seams};
  editor.Form_Load();
  editor.cmdEnter_Click();
  EXPECT_TRUE(disk.files[kPath].starts_with(before));
  // Every key of the section stands there now, empty ones too.
  EXPECT_NE(disk.files[kPath].find("\n7Enable=0\n1On=\n"), std::string::npos);
}

TEST_P(ScheduleEditorTest, CancelChangesNothing) {
  ScheduleEditor editor{kind.section, kind.form, state, seams};
  editor.Form_Load();
  Fill(editor);
  editor.cmdCancel_Click();
  EXPECT_TRUE(disk.files.empty());
  EXPECT_EQ(state.ScheduleOn, State{}.ScheduleOn);
  EXPECT_EQ(state.ScheduleEnable, State{}.ScheduleEnable);
  EXPECT_TRUE(forms.open.empty());
}

TEST_P(ScheduleEditorTest, EditedFileShowsInTheEditorAndNotInTheTables) {
  LoadSchedule(disk, kPath, state);
  disk.files[kPath] = kind.content;
  ScheduleEditor editor{kind.section, kind.form, state, seams};
  editor.Form_Load();
  EXPECT_TRUE(editor.Check1[6]);
  EXPECT_EQ(editor.txtTime[6], "t6");
  EXPECT_EQ(state.ScheduleOn[kind.section.on_slots + 7], "");
}

TEST_P(ScheduleEditorTest, FileThatCannotBeWrittenStillCountsForThisRun) {
  disk.refuse_writes = true;
  ScheduleEditor editor{kind.section, kind.form, state, seams};
  Fill(editor);
  editor.cmdEnter_Click();
  EXPECT_EQ(state.ScheduleOn[kind.section.on_slots + 1], "t0");
  EXPECT_EQ(host.reports.size(), 1u);
  EXPECT_TRUE(forms.open.empty());
  EXPECT_TRUE(events == Events{std::string("Unload ") + FormName(kind.form)});
}

TEST_P(ScheduleEditorTest, TextsStandAsTyped) {
  const std::string typed[] = {" 8:00", "\"8:00\"", "八点", "", "8:00;", "[8]", "'"};
  ScheduleEditor editor{kind.section, kind.form, state, seams};
  for (std::size_t i = 0; i < 7; ++i) editor.txtTime[i] = typed[i];
  editor.cmdEnter_Click();
  ScheduleEditor again{kind.section, kind.form, state, seams};
  again.Form_Load();
  for (std::size_t i = 0; i < 7; ++i) {
    EXPECT_EQ(again.txtTime[i], typed[i]);
    EXPECT_EQ(state.ScheduleOn[kind.section.on_slots + i + 1], typed[i]);
  }
}

TEST_P(ScheduleEditorTest, CheckBoxShowsWhatEnableSays) {
  struct Case {
    const char* text;
    bool set;
  };
  const Case cases[] = {{"1", true},  {"0", false}, {"", false},  {"10", true}, {"01", true},
                        {"2", false}, {"x", false}, {"1x", true}, {"-1", false}};
  for (const Case& row : cases) {
    SCOPED_TRACE(row.text);
    disk.files[kPath] = "[" + std::string(kind.section.name) + "]\n4Enable=" + row.text + "\n";
    ScheduleEditor editor{kind.section, kind.form, state, seams};
    editor.Form_Load();
    EXPECT_EQ(editor.Check1[3], row.set);
  }
}

INSTANTIATE_TEST_SUITE_P(WeekSpecialSelfTest, ScheduleEditorTest, testing::Range(0, 3));

TEST(ScheduleEditor, TellsASlipByTheKindOfItsBox) {
  EXPECT_TRUE(ScheduleEditor::Reads(0, "8:00"));
  EXPECT_TRUE(ScheduleEditor::Reads(13, "8:00 pm"));
  EXPECT_TRUE(ScheduleEditor::Reads(14, "2001-5-1"));
  EXPECT_TRUE(ScheduleEditor::Reads(0, ""));
  EXPECT_TRUE(ScheduleEditor::Reads(20, " "));
  EXPECT_FALSE(ScheduleEditor::Reads(13, "2001-5-1"));
  EXPECT_FALSE(ScheduleEditor::Reads(14, "8:00"));
  EXPECT_FALSE(ScheduleEditor::Reads(6, "8:60"));
}

}  // namespace
}  // namespace orvane::test
