#include "app/options.h"

#include <gtest/gtest.h>

#include <vector>

namespace orvane::test {
namespace {

TEST(OptionsTest, TheToolkitsPassAndUnknownOnesAreNamed) {
  const struct {
    std::vector<const char*> arguments;
    Request request;
    const char* unknown;
  } cases[] = {
      {{}, Request::kRun, ""},
      {{"--help"}, Request::kHelp, ""},
      {{"-platform", "offscreen", "--version"}, Request::kVersion, ""},
      {{"--style=fusion", "-reverse"}, Request::kRun, ""},
      {{"-platform"}, Request::kRun, ""},
      {{"--halp"}, Request::kUnknown, "--halp"},
      {{"-reverse", "file"}, Request::kUnknown, "file"},
  };
  for (const auto& row : cases) {
    std::vector<const char*> argv = {"orvane"};
    argv.insert(argv.end(), row.arguments.begin(), row.arguments.end());
    const CommandLine line = ReadCommandLine(static_cast<int>(argv.size()), argv.data());
    EXPECT_EQ(line.request, row.request) << &row - cases;
    EXPECT_EQ(line.unknown, row.unknown);
  }
  EXPECT_NE(HelpText("zh_CN.UTF-8"), HelpText("en_US.UTF-8"));
}

}  // namespace
}  // namespace orvane::test
