#include "ui/check_window.h"

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QLabel>
#include <QMenuBar>
#include <QPushButton>
#include <QToolButton>

#include "support/running_program.h"
#include "ui/main_window.h"
#include "ui/parts.h"

namespace orvane::test {
namespace {

struct CheckWindowTest : testing::Test, RunningProgram {
  CheckWindowTest() : RunningProgram(Language::kEnglish) {}

  bool Opened(Form which) const { return forms.open.contains(which); }
};

TEST_F(CheckWindowTest, ButtonsAndTickActOnTheirPoints) {
  for (const std::size_t slot : {8, 15}) {
    state.ScheduleEnable[slot] = '1';
    state.ScheduleDate[slot - 7] = "2025-12-24";
  }
  inspector.found.autostart = Autostart::kOff;
  ups_port.present.clear();
  Start();
  forms.open.clear();
  CheckWindow window(form);
  Present(window);
  Part<QPushButton>(window, "act0").click();
  EXPECT_TRUE(Opened(Form::kSettings));
  auto& clock = Part<QPushButton>(window, "act9");
  EXPECT_EQ(clock.text(), "Special days...");
  clock.click();
  EXPECT_TRUE(Opened(Form::kSpecialDays));
  state.ScheduleEnable[8] = ' ';
  form.Check().Update();
  EXPECT_EQ(clock.text(), "Self-tests...");
  clock.click();
  EXPECT_TRUE(Opened(Form::kSelfTests));
  EXPECT_FALSE(Part(window, "act2").isVisible());

  auto& tick = Part<QCheckBox>(window, "autostart");
  EXPECT_FALSE(tick.isChecked());
  // An entry that cannot be written leaves the tick as it was.
  inspector.may_write = false;
  tick.click();
  EXPECT_FALSE(tick.isChecked());
  inspector.may_write = true;
  tick.click();
  EXPECT_EQ(inspector.found.autostart, Autostart::kOn);

  const int asked = inspector.asked;
  Part<QPushButton>(window, "again").click();
  EXPECT_EQ(inspector.asked, asked + 1);
  Part<QPushButton>(window, "notify").click();
  EXPECT_TRUE(host.shown.contains(Notice::kTest));
}

TEST_F(CheckWindowTest, ShieldInTheMenuBarOpensIt) {
  MainWindow window(state, panel, form);
  Start();
  Present(window);
  auto& shield = Part<QToolButton>(window, "shield");
  EXPECT_EQ(shield.text(), "1");
  Polls(2);
  EXPECT_EQ(shield.text(), "");
  EXPECT_EQ(shield.accessibleName(), "Ready");
  shield.click();
  EXPECT_TRUE(Opened(Form::kProtectionCheck));
}

}  // namespace
}  // namespace orvane::test
