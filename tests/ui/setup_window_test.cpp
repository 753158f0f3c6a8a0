#include "ui/setup_window.h"

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QGroupBox>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QTest>
#include <QToolButton>
#include <memory>

#include "app/settings.h"
#include "support/world.h"

namespace orvane::test {
namespace {

const std::string kPath = "/prog/Orvane.ini";

class SetupWindowTest : public testing::Test, public World {
 protected:
  void Open(const std::string& line) {
    ParseSettings(line, state);
    state.ResBase = DeriveResBase(state);
    forms.open.insert(Form::frmSetup);
    window = std::make_unique<SetupWindow>(state, panel, main, seams);
    window->show();
    window->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(window.get()));
  }

  template <class Widget>
  Widget& Find(const char* name) {
    auto* widget = window->findChild<Widget*>(name);
    EXPECT_TRUE(widget) << name;
    return *widget;
  }

  QStringList Chosen() {
    QStringList names;
    for (const auto* option : window->findChildren<QRadioButton*>()) {
      if (option->isChecked()) names << option->objectName();
    }
    return names;
  }

  std::string Save() {
    QTest::mouseClick(&Find<QToolButton>("cmdSave"), Qt::LeftButton);
    return disk.files[kPath];
  }

  FrmMain main{state, panel, seams};
  std::unique_ptr<SetupWindow> window;
};

TEST_F(SetupWindowTest, ShowsTheSettingsAndSavesThemUnchanged) {
  Open("2,30,0,5,0,2,30,1,3,110,\"119\",1");
  EXPECT_EQ(Chosen(), (QStringList{"OptCom(2)", "OptCom(7)"}));
  EXPECT_EQ(Find<QLineEdit>("txt(0)").text(), "30");
  EXPECT_EQ(Find<QLineEdit>("txt(5)").text(), "30");
  EXPECT_EQ(Find<QComboBox>("cob").currentText(), "60 S");
  EXPECT_TRUE(Find<QCheckBox>("Check1(1)").isChecked());
  EXPECT_FALSE(Find<QCheckBox>("Check1(3)").isChecked());
  EXPECT_EQ(Find<QComboBox>("cobLanguege").currentText(), " Chinese(Simp.)");
  EXPECT_EQ(Save(), "2,30,0,5,0,2,30,1,3,110,\"119\",1\r\n");
  EXPECT_FALSE(forms.open.contains(Form::frmSetup));
}

TEST_F(SetupWindowTest, EveryControlWritesItsSlot) {
  Open("1,0,0,0,0,0,0,0,1,0,\"\",0");
  for (int i = 0; i < 6; ++i) {
    auto& box = Find<QLineEdit>(("txt(" + std::to_string(i) + ")").c_str());
    box.selectAll();
    QTest::keyClicks(&box, "98765");
  }
  QTest::keyClick(&Find<QComboBox>("cob"), Qt::Key_End);
  Find<QRadioButton>("OptCom(6)").click();
  Find<QCheckBox>("Check1(2)").click();
  Find<QCheckBox>("Check1(3)").click();
  QTest::keyClicks(&Find<QLineEdit>("txtPhone"), "0,\"119\" x");
  QTest::keyClick(&Find<QComboBox>("cobLanguege"), Qt::Key_Down);
  EXPECT_EQ(Save(), "1,987,98,987,98,98,987,10,4,11,\"0,119 x\",1\r\n");
  EXPECT_EQ(state.ResBase, 1000);
}

TEST_F(SetupWindowTest, NumberBoxesTakeDigitsAndMendThemselves) {
  Open("1,0,0,0,0,0,0,0,1,0,\"\",0");
  auto& box = Find<QLineEdit>("txt(0)");
  box.setFocus();
  QTest::keyClicks(&box, "a-1. x");
  EXPECT_EQ(box.text(), "01");
  QTest::keyClick(&box, Qt::Key_Backspace);
  QTest::keyClick(&box, Qt::Key_Backspace);
  EXPECT_EQ(box.text(), "");
  Find<QLineEdit>("txt(1)").setFocus();
  EXPECT_EQ(box.text(), "0");
  // What cannot be typed can be pasted, up to the box's length; it is no number.
  QGuiApplication::clipboard()->setText("5xyz");
  box.selectAll();
  box.paste();
  EXPECT_EQ(box.text(), "5xy");
  EXPECT_EQ(Save(), "1,0,0,0,0,0,0,0,1,0,\"\",0\r\n");
}

TEST_F(SetupWindowTest, PhoneTakesAllButQuotesWhereverTheyCome) {
  Open("1,0,0,0,0,0,0,0,1,0,\"12\",0");
  auto& phone = Find<QLineEdit>("txtPhone");
  phone.setCursorPosition(1);
  QTest::keyClicks(&phone, "\"ab");
  EXPECT_EQ(phone.text(), "1ab2");
  QGuiApplication::clipboard()->setText("\"9\"");
  phone.selectAll();
  phone.paste();
  EXPECT_EQ(Save(), "1,0,0,0,0,0,0,0,1,0,\"9\",0\r\n");
}

TEST_F(SetupWindowTest, ValuesWithoutAControlOpenWithNothingChosen) {
  Open("9,-5,0,12345,0,0,0,11,0,0,\"\",7");
  EXPECT_EQ(Chosen(), QStringList{});
  EXPECT_EQ(Find<QComboBox>("cob").currentIndex(), -1);
  EXPECT_EQ(Find<QComboBox>("cobLanguege").currentIndex(), -1);
  EXPECT_EQ(Save(), "9,-5,0,12345,0,0,0,11,0,0,\"\",7\r\n");
}

TEST_F(SetupWindowTest, PortGroupsAreExclusiveEachForItself) {
  Open("1,0,0,0,0,0,0,0,0,0,\"\",0");
  Find<QRadioButton>("OptCom(9)").click();
  EXPECT_EQ(Chosen(), (QStringList{"OptCom(1)", "OptCom(9)"}));
  Find<QRadioButton>("OptCom(4)").click();
  Find<QRadioButton>("OptCom(8)").click();
  EXPECT_EQ(Chosen(), (QStringList{"OptCom(4)", "OptCom(8)"}));
}

TEST_F(SetupWindowTest, EnterSavesAndEscapeLeaves) {
  for (const bool enter : {true, false}) {
    disk.files.clear();
    Open("1,0,0,0,0,0,0,0,1,0,\"\",0");
    auto& box = Find<QLineEdit>("txt(3)");
    box.setFocus();
    QTest::keyClick(&box, enter ? Qt::Key_Return : Qt::Key_Escape);
    EXPECT_EQ(disk.files.contains(kPath), enter);
    EXPECT_FALSE(forms.open.contains(Form::frmSetup));
  }
}

TEST_F(SetupWindowTest, SpeaksTheLanguageOfItsLoad) {
  struct Case {
    const char* name;
    const char* chinese;
    const char* english;
  };
  const Case labels[] = {
      {"Label1", "在市电中断后电池可用:", "Expect Batt. Life"},
      {"Label3(0)", "估计电池从欠压起可用:", "Batt. Lift When it Low"},
      {"Label3(1)", "关机前几分钟开始显示警告：", "Warning Before Schedule Down"},
      {"Label3(2)", "警告信息显示周期：", "Period Warning Time"},
      {"Label3(3)", "UPS关闭前的缓冲时间：", "Shutdown Delay Time"},
      {"Label2(0)", "分", "Min."},
      {"Label2(1)", "分", "Min"},
      {"Label2(2)", "分。", "Min"},
      {"Label4(0)", "秒。", "Sec."},
      {"Label4(1)", "秒。", "Sec."},
      {"Label4(2)", "秒。", "Sec."},
      {"Label5", "紧急呼叫电话：", "PhoneCode for Emergency"},
      {"Label6", "语 言 选 择：", "Used Language:"},
  };
  for (const bool chinese : {true, false}) {
    Open(chinese ? "1,0,0,0,0,0,0,0,1,0,\"\",1" : "1,0,0,0,0,0,0,0,1,0,\"\",0");
    const auto pick = [&](const char* cn, const char* en) { return chinese ? cn : en; };
    for (const Case& row : labels) {
      EXPECT_EQ(Find<QLabel>(row.name).text(), pick(row.chinese, row.english)) << row.name;
    }
    EXPECT_EQ(window->windowTitle(), pick("系统设置", "Configure"));
    EXPECT_EQ(Find<QGroupBox>("Frame1").title(), pick("UPS通信端口", "UPS Used Port"));
    EXPECT_EQ(Find<QGroupBox>("Frame2").title(), pick("MODEM通信端口", "Modem Used Port"));
    EXPECT_EQ(Find<QGroupBox>("Frame3").title(), pick("何时需要紧急呼叫", "Call Emergency when"));
    EXPECT_EQ(Find<QRadioButton>("OptCom(0)").text(), pick("自动", "Auto"));
    EXPECT_EQ(Find<QCheckBox>("Check1(1)").text(), pick("市电中断", "AC Fail"));
    EXPECT_EQ(Find<QCheckBox>("Check1(2)").text(), pick("电池欠压", "Batt.Low"));
    EXPECT_EQ(Find<QCheckBox>("Check1(3)").text(), pick("UPS异常", "UPS Fail"));
    EXPECT_EQ(Find<QToolButton>("cmdSave").toolTip(), pick("保存", "Save"));
    EXPECT_EQ(Find<QToolButton>("cmdExit").toolTip(), pick("退出", "Cancel"));
    EXPECT_FALSE(Find<QToolButton>("cmdSave").icon().pixmap(24).isNull());
  }
}

}  // namespace
}  // namespace orvane::test
