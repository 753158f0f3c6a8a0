// The event log as its window reads and clears it.
#include "records/event_log.h"

#include <gtest/gtest.h>

#include "support/world.h"

namespace orvane::test {
namespace {

// A program whose log holds `lines` events, and its log window.
struct LogWorld : World {
  EventLog form{state, disk, dialogs, "/prog/system.log"};

  explicit LogWorld(int lines) {
    while (lines-- > 0) journals.WriteLog("AC fail");
  }
};

TEST(EventLog, HoldsTheLinesUnchanged) {
  LogWorld world(0);
  world.journals.WriteLog("Program start");
  world.journals.WriteLog("市电失效");
  world.form.Form_Load();
  ASSERT_EQ(world.form.Lines(), 2U);
  EXPECT_EQ(world.form.Line(0), "\"\n2001-02-16 9:05:33 Program start\"");
  EXPECT_EQ(world.form.Line(1), "\"\n2001-02-16 9:05:33 市电失效\"");
}

TEST(EventLog, PutsEnglishCaptionsInPlaceBehindAFileAlone) {
  for (const std::int16_t language : {std::int16_t{0}, std::int16_t{1000}}) {
    LogWorld absent(0);
    absent.state.ResBase = language;
    EXPECT_FALSE(absent.form.Form_Load());
    EXPECT_EQ(absent.form.Lines(), 0U);
    LogWorld present(1);
    present.state.ResBase = language;
    EXPECT_EQ(present.form.Form_Load(), language == 0);
    LogWorld empty(0);
    empty.disk.files["/prog/System.log"] = "";
    empty.state.ResBase = language;
    EXPECT_EQ(empty.form.Form_Load(), language == 0);
    EXPECT_EQ(empty.form.Lines(), 0U);
  }
}

TEST(EventLog, EventsAppearAtTheNextOpening) {
  LogWorld world(1);
  world.form.Form_Load();
  world.journals.WriteLog("Program end");
  EXPECT_EQ(world.form.Lines(), 1U);
  world.form.Form_Load();
  EXPECT_EQ(world.form.Lines(), 2U);
}

TEST(EventLog, ClearsOnYesAlone) {
  LogWorld world(2);
  world.journals.WriteDateRec(kRecordAcFail);
  world.form.Form_Load();
  const auto files = world.disk.files;
  EXPECT_FALSE(world.form.cmdClear_Click());
  ASSERT_EQ(world.events.size(), 1U);
  EXPECT_NE(world.events[0].find("Are you sure to clear Log file?"), std::string::npos);
  EXPECT_NE(world.events[0].find("Orvane"), std::string::npos);
  EXPECT_EQ(world.form.Lines(), 2U);
  EXPECT_EQ(world.disk.files, files);

  world.dialogs.answer = true;
  EXPECT_TRUE(world.form.cmdClear_Click());
  EXPECT_EQ(world.form.Lines(), 0U);
  EXPECT_EQ(world.Log(), "");
  EXPECT_FALSE(world.disk.Exists("/prog/System.log"));
  EXPECT_NE(world.DateRec(), "");
}

TEST(EventLog, AClearOfAnEmptyListLeavesTheNewFile) {
  LogWorld world(1);
  world.dialogs.answer = true;
  world.form.Form_Load();
  world.form.cmdClear_Click();
  world.journals.WriteLog("AC fail");
  world.events.clear();
  EXPECT_FALSE(world.form.cmdClear_Click());
  EXPECT_EQ(world.events, Events{});
  EXPECT_EQ(world.Log(), "\"\n2001-02-16 9:05:33 AC fail\"\r\n");
}

TEST(EventLog, TheListIsEmptiedAlsoWhenTheFileCannotBeDeleted) {
  LogWorld world(1);
  world.dialogs.answer = true;
  world.form.Form_Load();
  world.disk.refuse_writes = true;
  EXPECT_TRUE(world.form.cmdClear_Click());
  EXPECT_EQ(world.form.Lines(), 0U);
  EXPECT_NE(world.Log(), "");
}

}  // namespace
}  // namespace orvane::test
