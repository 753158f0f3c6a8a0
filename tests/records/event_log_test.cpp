// The two journals as they are written, and the event log as its window reads and clears it.
#include "records/event_log.h"

#include <gtest/gtest.h>

#include "support/world.h"

namespace orvane::test {
namespace {

class EventLogTest : public testing::Test, public World {
 protected:
  EventLog form{state, disk, dialogs, "/prog/system.log"};
};

TEST_F(EventLogTest, JournalsStandToTheByteAndTheWindowShowsTheLines) {
  journals.WriteLog("Program start");
  journals.WriteDateRec(RecordCode::kMainsFailed);
  time.SetWall({2001, 12, 31, 23, 59, 59});
  journals.WriteLog("市电失效");
  journals.WriteDateRec(RecordCode::kScheduleDown);
  EXPECT_EQ(Log(),
            "\"\n2001-02-16 9:05:33 Program start\"\r\n"
            "\"\n2001-12-31 23:59:59 市电失效\"\r\n");
  EXPECT_EQ(DateRec(), "\"\n2001-02-16 09 1\"\r\n\"\n2001-12-31 23 0\"\r\n");
  form.Load();
  // What comes later appears at the next opening.
  journals.WriteLog("Program end");
  ASSERT_EQ(form.Lines().size(), 2U);
  EXPECT_EQ(form.Lines()[0], "\"\n2001-02-16 9:05:33 Program start\"");
  EXPECT_EQ(form.Lines()[1], "\"\n2001-12-31 23:59:59 市电失效\"");
  // A power cut may have left a line without its end.
  disk.files["/prog/System.log"] += "\"\n2002-01-01";
  form.Load();
  ASSERT_EQ(form.Lines().size(), 4U);
  EXPECT_EQ(form.Lines()[3], "\"\n2002-01-01");
}

TEST_F(EventLogTest, PutsEnglishCaptionsInPlaceBehindAFileAlone) {
  for (const bool english : {true, false}) {
    state.language = english ? Language::kEnglish : Language::kChinese;
    disk.files.clear();
    EXPECT_FALSE(form.Load());
    disk.files["/prog/System.log"] = "";
    EXPECT_EQ(form.Load(), english);
    EXPECT_EQ(form.Lines().size(), 0U);
  }
}

TEST_F(EventLogTest, ClearsOnYesAlone) {
  journals.WriteLog("AC fail");
  form.Load();
  EXPECT_FALSE(form.Clear());
  EXPECT_EQ(events, Events{"Ask [Orvane] Are you sure to clear Log file?"});
  dialogs.answer = true;
  EXPECT_TRUE(form.Clear());
  // A clear of the empty list leaves the new file.
  journals.WriteLog("AC fail");
  events.clear();
  EXPECT_FALSE(form.Clear());
  EXPECT_EQ(events, Events{});
  // The list is emptied also when the file cannot be deleted.
  form.Load();
  disk.refuse_writes = true;
  EXPECT_TRUE(form.Clear());
  EXPECT_EQ(form.Lines().size(), 0U);
  EXPECT_EQ(Log(), "\"\n2001-02-16 9:05:33 AC fail\"\r\n");
}

}  // namespace
}  // namespace orvane::test
