#include "frame/settings_form.h"

#include <gtest/gtest.h>

#include <utility>

#include "frame/main_form.h"
#include "support/status_frame.h"
#include "support/world.h"

namespace orvane::test {
namespace {

const std::string kPath = "/prog/Orvane.ini";
const std::string kPlain = "1,0,0,0,0,0,0,0,1,0,\"\",0\r\n";

class SettingsFormTest : public testing::Test, public World {
 protected:
  SettingsFormTest() {
    // The windows' part in a reload.
    forms.OnUnload = [this](Form form) {
      if (form == Form::kMain) main.Unload();
    };
    forms.OnLoad = [this](Form form) {
      if (form == Form::kMain) main.Load();
    };
  }

  // The program runs with this settings file, and the dialog stands open.
  void Start(const std::string& line) {
    main.Unload();
    disk.files[kPath] = line;
    forms.open.clear();
    forms.Show(Form::kMain);
    main.Activate();
    Open();
    events.clear();
    disk.files[journals.LogPath()].clear();
  }

  void Open() {
    main.OpenSettings();
    setup.Load();
  }

  std::string Saved() {
    setup.Save();
    return disk.files[kPath];
  }

  MainForm main{state, panel, seams};
  SettingsForm setup{main, forms, dialogs};
};

TEST_F(SettingsFormTest, CallsAreTheDigitsOfASlot) {
  // Numbers that are no conditions show none, and become 0.
  const std::pair<int, std::string> slots[] = {{1, "001"},   {10, "010"},  {100, "100"},
                                               {111, "111"}, {250, "000"}, {-11, "000"}};
  const std::string line = "1,0,0,0,0,0,0,0,2,";
  for (const auto& [slot, digits] : slots) {
    SCOPED_TRACE(slot);
    Start(line + std::to_string(slot) + ",\"\",0\r\n");
    std::string shown;
    for (const bool call : setup.calls) shown += call ? '1' : '0';
    EXPECT_EQ(shown, digits);
    EXPECT_EQ(Saved(), line + std::to_string(std::stoi(digits)) + ",\"\",0\r\n");
  }
}

TEST_F(SettingsFormTest, NumbersAreTakenByTheirRulesAndBySavingAlone) {
  Start(kPlain);
  setup.numbers = {"", "x", "045", "-", "1 2", "40000"};
  setup.Cancel();
  EXPECT_EQ(events, Events{"Unload settings"});
  EXPECT_EQ(disk.files[kPath], kPlain);
  EXPECT_EQ(state.Settings[3], 0);
  EXPECT_EQ(Saved(), "1,0,0,45,0,0,0,0,1,0,\"\",0\r\n");
}

TEST_F(SettingsFormTest, SamePortLeavesTheMainFormRunning) {
  Start("2,0,0,0,0,0,0,0,1,0,\"\",0\r\n");
  ups_port.Receive(StatusFrame{}.Text());
  panel.bar_face.Visible(false);
  ups_port.sent.clear();
  setup.language = 1;
  setup.Save();
  EXPECT_EQ(events, Events{"Unload settings"});
  EXPECT_EQ(Log(), "");
  EXPECT_TRUE(ups_port.IsOpen());
  EXPECT_FALSE(panel.bar_face.Visible());
  // Menus and labels at once; the states when they are next set.
  EXPECT_EQ(panel.settings_entry.Text(), "系统设置(&C)");
  EXPECT_EQ(panel.port_line.Caption(), "UPS安装在：COM2");
  EXPECT_EQ(panel.mains.Caption(), "Normal");
  EXPECT_EQ(ups_port.Wire(), "MD\r");
}

TEST_F(SettingsFormTest, AutoOverAutoTellsThePortOfTheSearch) {
  for (const int found : {3, 0}) {
    ups_port.Close();
    ups_port.present = {found};
    Start("0,0,0,0,0,0,0,0,1,0,\"\",0\r\n");
    setup.Save();
    EXPECT_EQ(events, Events{"Unload settings"});
    EXPECT_EQ(panel.port_line.Caption(), found ? "UPS Install on:Com3" : "UPS Install on:Com4");
  }
}

// Each save here changes the port, which reloads the main form.
TEST_F(SettingsFormTest, FailedSaveIsToldAndHoldsForThisRun) {
  Start(kPlain);
  disk.refuse_writes = true;
  setup.ups_port = 2;
  setup.phone = "119";
  EXPECT_EQ(Saved(), kPlain);
  EXPECT_EQ(events, (Events{"Unload settings", "Unload main", "Show main",
                            "Exclamation [Warning] The settings could not be saved to disk. They "
                            "hold until the program ends."}));
  EXPECT_EQ(panel.port_line.Caption(), "UPS Install on:Com2");
  EXPECT_EQ(state.PhoneCode, "119");

  // The next save that works puts the file first again.
  disk.refuse_writes = false;
  Open();
  setup.ups_port = 3;
  setup.language = 1;
  EXPECT_EQ(Saved(), "3,0,0,0,0,0,0,0,1,0,\"119\",1\r\n");
  EXPECT_EQ(events.back(), "Show main");
  disk.files[kPath] = "4,0,0,0,0,0,0,0,1,0,\"\",1\r\n";
  main.Reload();
  EXPECT_EQ(panel.port_line.Caption(), "UPS安装在：COM4");

  // The box speaks the language just chosen.
  disk.refuse_writes = true;
  Open();
  setup.Save();
  EXPECT_EQ(events.back(), "Exclamation [警告] 设置无法保存到磁盘，仅在本次运行期间有效。");
}

}  // namespace
}  // namespace orvane::test
