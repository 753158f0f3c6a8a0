// The report of the last shutdown as its window reads it.
#include "records/shutdown_report.h"

#include <gtest/gtest.h>

#include <vector>

#include "support/memory_disk.h"

namespace orvane::test {
namespace {

constexpr const char* kPath = "/windows/SaverApp.INI";

using Texts = std::vector<std::string>;

struct Report {
  MemoryDisk disk;
  ShutdownReport form{disk, kPath};

  explicit Report(const std::string& file) {
    disk.files[kPath] = file;
    form.Activate();
  }

  Texts Titles() const {
    Texts titles;
    for (std::int64_t i = 0; i < form.Applications(); ++i) titles.push_back(form.Title(i));
    return titles;
  }
  Texts Files() const {
    Texts files;
    for (std::int64_t i = 0; i < form.Files(); ++i) files.push_back(form.FileName(i));
    return files;
  }
};

TEST(ShutdownReport, ShowsNothingWithoutAReport) {
  for (const char* file :
       {"", "[Main]\r\nAppNumber=1\r\nApp0=A\r\n",
        "[Main]\r\nShowMsg=0\r\nAppNumber=1\r\nApp0=A\r\n",
        "[Main]\r\nShowMsg=11\r\nAppNumber=1\r\nApp0=A\r\n", "[Main]\r\nShowMsg=1\r\n",
        "[Other]\r\nShowMsg=1\r\nAppNumber=1\r\nApp0=A\r\n"}) {
    EXPECT_EQ(Report(file).Titles(), Texts{}) << file;
  }
}

TEST(ShutdownReport, TakesCountsByTheirLeadingDigits) {
  const struct {
    const char* text;
    std::int64_t count;
  } cases[] = {{"02", 2},
               {"2.9 apps", 2},
               {"", 0},
               {"x2", 0},
               {"-2", 0},
               {"1000000", 1000000},
               {"1234567890", 123456789}};  // the read ends after nine characters
  for (const auto& [text, count] : cases) {
    Report report("[Main]\r\nShowMsg=1\r\nApp0=A\r\nAppNumber=" + std::string(text) +
                  "\r\n[A]\r\nFileNumber=" + text + "\r\nFile0=f\r\n");
    EXPECT_EQ(report.form.Applications(), count) << text;
    // An entry that the file has not is empty.
    EXPECT_EQ(report.form.SectionName(1), "");
    EXPECT_EQ(report.form.Title(1), "");
    report.form.ShowFileList(0);
    EXPECT_EQ(report.form.Files(), count) << text;
    EXPECT_EQ(report.form.FileName(1), "");
  }
}

TEST(ShutdownReport, CutsNamesAtTheSizeOfTheRead) {
  std::string chinese;
  for (int i = 0; i < 40; ++i) chinese += "电";
  const struct {
    const char* name;
    std::string title;
    std::string shown;
  } cases[] = {{"three bytes each, to the byte", chinese, chinese.substr(0, 99)},
               {"not inside a character", 'x' + chinese, 'x' + chinese.substr(0, 96)},
               {"up to the first NUL", std::string("one\0two", 7), "one"}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    Report report("[Main]\r\nShowMsg=1\r\nAppNumber=1\r\nApp0=A\r\n[A]\r\nTitle=" + c.title +
                  "\r\nFileNumber=1\r\nFile0=" + c.title + "\r\n");
    EXPECT_EQ(report.Titles(), Texts{c.shown});
    report.form.ShowFileList(0);
    EXPECT_EQ(report.Files(), Texts{c.shown});
  }
}

TEST(ShutdownReport, ClearsTheListsAlsoWhereTheFileCannotBeWritten) {
  const std::string file = "[Main]\r\nShowMsg=1\r\nAppNumber=1\r\nApp0=A\r\n";
  Report report(file);
  report.disk.refuse_writes = true;
  report.form.Clear();
  EXPECT_EQ(report.Titles(), Texts{});
  EXPECT_EQ(report.disk.files[kPath], file);
}

}  // namespace
}  // namespace orvane::test
