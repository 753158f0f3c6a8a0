#include "companion/saver.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>

#include "support/temp_folder.h"

namespace orvane::companion {
namespace {

using std::chrono::steady_clock;

// A desktop that shows what a test says, and none of what it is spared.
struct FakeDesktop : Desktop {
  static std::vector<Application> But(const std::set<pid_t>& spared,
                                      std::vector<Application> shown) {
    std::erase_if(shown, [&](const Application& application) {
      return std::any_of(application.processes.begin(), application.processes.end(),
                         [&](pid_t process) { return spared.contains(process); });
    });
    return shown;
  }

  std::vector<Application> List(const std::set<pid_t>&) override { return listed; }
  void AskToClose() override { on_ask(); }
  bool Look(std::vector<bool>& gone) override {
    ++looks;
    gone.assign(listed.size(), false);
    return true;
  }
  bool IsAsking() override { return looks < looks_until_answer; }
  std::vector<Application> Others(const std::set<pid_t>& spared) override {
    on_others();
    return But(spared, others);
  }

  std::vector<Application> listed;
  std::vector<Application> others;
  int looks = 0;
  int looks_until_answer = 0;
  std::function<void()> on_ask = [] {};
  std::function<void()> on_others = [] {};
};

struct SaverTest : testing::Test {
  std::vector<Application> Run(std::chrono::seconds patience) {
    return SaveAndClose(desktops, steady_clock::now() + patience,
                        [&](const std::vector<Application>& known) { reported = known; });
  }

  FakeDesktop* windows = new FakeDesktop;
  FakeDesktop* units = new FakeDesktop;
  std::vector<std::unique_ptr<Desktop>> desktops = [&] {
    std::vector<std::unique_ptr<Desktop>> both;
    both.emplace_back(windows);
    both.emplace_back(units);
    return both;
  }();
  std::vector<Application> reported;
};

// Windows may be closing that stand in no list.
TEST_F(SaverTest, WaitsForADesktopThatIsStillAsking) {
  units->looks_until_answer = 3;
  EXPECT_TRUE(Run(std::chrono::hours(1)).empty());
  EXPECT_EQ(units->looks, 3);
}

// A window that cannot be asked may belong to a unit that was. The numbers are above those of any
// process.
TEST_F(SaverTest, NamesAnApplicationOnce) {
  units->listed = {{"the unit", {5'000'001}, false, {}}};
  windows->others = {{"its window", {5'000'001}, false, {}},
                     {"lone window", {5'000'002}, false, {}}};
  units->others = {{"the lone window's unit", {5'000'002}, false, {}}};
  std::vector<std::string> titles;
  for (const Application& application : Run(std::chrono::seconds(0))) {
    titles.push_back(application.title);
  }
  EXPECT_EQ(titles, (std::vector<std::string>{"the unit", "lone window"}));
}

TEST_F(SaverTest, ReportsFilesBeforeTheLastLookAtDesktops) {
  const test::TempFolder folder;
  const std::string path = folder.Path("saved");
  std::ofstream file(path);
  windows->listed = {{"writer", {getpid()}, false, {}}};
  windows->on_ask = [&] { file << "text" << std::flush; };
  std::vector<std::string> known;
  windows->on_others = [&] { known = reported[0].files; };
  Run(std::chrono::seconds(0));
  // Whoever runs the test may write to what this process holds, too.
  EXPECT_EQ(std::count(known.begin(), known.end(), path), 1);
}

}  // namespace
}  // namespace orvane::companion
