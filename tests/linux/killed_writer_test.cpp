// A writer of files that is killed at any moment.
#include <gtest/gtest.h>

#include "platform/linux/linux_disk.h"
#include "support/killed_process.h"
#include "support/temp_folder.h"

namespace orvane::test {
namespace {

const std::string kRecord = "\"\n2001-02-16 09 1\"\r\n";

TEST(KilledWriter, LeavesTheOldFileOrTheNewOne) {
  const struct {
    bool (LinuxDisk::*write)(const std::string& path, std::string_view text);
    std::string before;  // empty: no file
    bool keeps;          // what stood in the file
  } cases[] = {{&LinuxDisk::Replace, "settings", false},
               {&LinuxDisk::Append, "", true},
               {&LinuxDisk::Append, kRecord, true}};
  for (const auto& [write, before, keeps] : cases) {
    int stops = 0;
    for (Fate fate = Fate::kKilled; fate == Fate::kKilled; ++stops) {
      SCOPED_TRACE(before + std::to_string(stops));
      const TempFolder folder;
      LinuxDisk disk;
      if (!before.empty()) folder.Write("file", before);
      const auto act = [&, write = write] { return (disk.*write)(folder.Path("file"), kRecord); };
      fate = KilledAt(stops, act);
      if (fate == Fate::kNotTraced) GTEST_SKIP() << "no process may be traced here";
      const std::string found = folder.Read("file");
      ASSERT_TRUE(found == before || found == (keeps ? before : "") + kRecord) << found;
      // The next one works, whatever lies about.
      ASSERT_TRUE(act());
      ASSERT_EQ(folder.Read("file"), (keeps ? found : "") + kRecord);
      ASSERT_EQ(folder.Size(), 1U);
    }
    // Opening, writing, syncing, closing: each stops twice.
    EXPECT_GT(stops, 8);
  }
}

}  // namespace
}  // namespace orvane::test
