#include "frame/frm_setup.h"

#include <gtest/gtest.h>

#include <utility>

#include "support/status_frame.h"
#include "support/world.h"

namespace orvane::test {
namespace {

const std::string kPath = "/prog/Orvane.ini";
const std::string kPlain = "1,0,0,0,0,0,0,0,1,0,\"\",0\r\n";

class FrmSetupTest : public testing::Test, public World {
 protected:
  FrmSetupTest() {
    // The windows' part in a reload.
    forms.OnUnload = [this](Form form) {
      if (form == Form::frmMain) main.Form_QueryUnload();
    };
    forms.OnLoad = [this](Form form) {
      if (form == Form::frmMain) main.Form_Load();
    };
  }

  // The program runs with this settings file, and the dialog stands open.
  void Start(const std::string& line) {
    main.Form_QueryUnload();
    disk.files[kPath] = line;
    forms.open.clear();
    forms.Show(Form::frmMain);
    main.Form_Activate();
    Open();
    events.clear();
    disk.files[journals.LogPath()].clear();
  }

  void Open() {
    main.mnuSetup_Click();
    setup.Form_Load();
  }

  void ChooseUpsPort(std::size_t index) {
    for (std::size_t i = 0; i <= 4; ++i) setup.OptCom[i] = i == index;
  }

  std::string Saved() {
    setup.cmdSave_Click();
    return disk.files[kPath];
  }

  FrmMain main{state, panel, seams};
  FrmSetup setup{state, panel, main, seams};
};

TEST_F(FrmSetupTest, ModemPortsStandInFallingOrderAndDialConditionsInDigits) {
  // Numbers that are no conditions show none, and become 0.
  const std::pair<int, std::string> slots[] = {{1, "001"},   {10, "010"},  {100, "100"},
                                               {111, "111"}, {250, "000"}, {-11, "000"}};
  std::size_t port = 1;
  for (const auto& [slot, digits] : slots) {
    SCOPED_TRACE(slot);
    const std::string line = "1,0,0,0,0,0,0,0," + std::to_string(port) + ',';
    Start(line + std::to_string(slot) + ",\"\",0\r\n");
    for (std::size_t k = 1; k <= 3; ++k) EXPECT_EQ(setup.Check1[k], digits[k - 1] == '1');
    for (std::size_t i = 6; i <= 9; ++i) EXPECT_EQ(setup.OptCom[i], i == 10 - port);
    EXPECT_EQ(Saved(), line + std::to_string(std::stoi(digits)) + ",\"\",0\r\n");
    port = port % 4 + 1;
  }
}

TEST_F(FrmSetupTest, NumbersAreTakenByTheirRulesAndBySavingAlone) {
  Start(kPlain);
  setup.txt = {"", "x", "045", "-", "1 2", ""};
  setup.cmdExit_Click();
  EXPECT_EQ(events, Events{"Unload frmSetup"});
  EXPECT_EQ(disk.files[kPath], kPlain);
  EXPECT_EQ(state.Settings[3], 0);
  EXPECT_EQ(Saved(), "1,0,0,45,0,0,0,0,1,0,\"\",0\r\n");
}

TEST_F(FrmSetupTest, SamePortLeavesTheMainFormRunning) {
  Start("2,0,0,0,0,0,0,0,1,0,\"\",0\r\n");
  MSComm1.Receive(StatusFrame{}.Text());
  panel.picAPC.Visible(false);
  MSComm1.sent.clear();
  setup.cobLanguege = 1;
  setup.cmdSave_Click();
  EXPECT_EQ(events, Events{"Unload frmSetup"});
  EXPECT_EQ(Log(), "");
  EXPECT_TRUE(MSComm1.PortOpen());
  EXPECT_FALSE(panel.picAPC.Visible());
  // Menus and labels at once; the states when they are next set.
  EXPECT_EQ(panel.mnuSetup.Text(), "系统设置(&C)");
  EXPECT_EQ(panel.Label14.Caption(), "UPS安装在：COM2");
  EXPECT_EQ(panel.lblAc.Caption(), "Normal");
  EXPECT_EQ(MSComm1.Wire(), "MD\r");
}

TEST_F(FrmSetupTest, AutoOverAutoTellsThePortOfTheSearch) {
  for (const int found : {3, 0}) {
    MSComm1.PortOpen(false);
    MSComm1.present = {found};
    Start("0,0,0,0,0,0,0,0,1,0,\"\",0\r\n");
    setup.cmdSave_Click();
    EXPECT_EQ(events, Events{"Unload frmSetup"});
    EXPECT_EQ(panel.Label14.Caption(), found ? "UPS Install on:Com3" : "UPS Install on:Com4");
  }
}

// Each save here changes the port, which reloads the main form.
TEST_F(FrmSetupTest, FailedSaveIsToldAndHoldsForThisRun) {
  Start(kPlain);
  disk.refuse_writes = true;
  ChooseUpsPort(2);
  setup.txtPhone = "119";
  EXPECT_EQ(Saved(), kPlain);
  EXPECT_EQ(events, (Events{"Unload frmSetup", "Unload frmMain", "Show frmMain",
                            "Exclamation [Warning] The settings could not be saved to disk. They "
                            "hold until the program ends."}));
  EXPECT_EQ(panel.Label14.Caption(), "UPS Install on:Com2");
  EXPECT_EQ(state.PhoneCode, "119");

  // The next save that works puts the file first again.
  disk.refuse_writes = false;
  Open();
  ChooseUpsPort(3);
  setup.cobLanguege = 1;
  EXPECT_EQ(Saved(), "3,0,0,0,0,0,0,0,1,0,\"119\",1\r\n");
  EXPECT_EQ(events.back(), "Show frmMain");
  disk.files[kPath] = "4,0,0,0,0,0,0,0,1,0,\"\",1\r\n";
  main.Reload();
  EXPECT_EQ(panel.Label14.Caption(), "UPS安装在：COM4");

  // The box speaks the language just chosen.
  disk.refuse_writes = true;
  Open();
  setup.cmdSave_Click();
  EXPECT_EQ(events.back(), "Exclamation [警告] 设置无法保存到磁盘，仅在本次运行期间有效。");
}

}  // namespace
}  // namespace orvane::test
