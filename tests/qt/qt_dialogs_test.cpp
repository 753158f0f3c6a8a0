#include "platform/qt/qt_dialogs.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QPushButton>
#include <QTimer>
#include <functional>
#include <utility>

namespace orvane::test {
namespace {

struct QtDialogsTest : testing::Test {
  // Does something to the next box, once it stands.
  void WhenItStands(const std::function<void(QMessageBox&)>& act) {
    QTimer::singleShot(0, [act] {
      auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      ASSERT_TRUE(box);
      act(*box);
    });
  }

  QtDialogs dialogs;
};

TEST_F(QtDialogsTest, QuestionIsYesForYesAlone) {
  const std::pair<std::function<void(QMessageBox&)>, bool> cases[] = {
      {[](QMessageBox& box) { box.button(QMessageBox::Yes)->click(); }, true},
      {[](QMessageBox& box) { box.button(QMessageBox::No)->click(); }, false},
      {[](QMessageBox& box) { box.defaultButton()->click(); }, false},  // by Enter
      {[](QMessageBox& box) { box.close(); }, false},
  };
  int number = 0;
  for (const auto& [act, answer] : cases) {
    SCOPED_TRACE(number++);
    WhenItStands([&, act = act](QMessageBox& box) {
      EXPECT_EQ(box.text(), "Are you <sure>?");
      EXPECT_EQ(box.textFormat(), Qt::PlainText);
      EXPECT_EQ(box.icon(), QMessageBox::Question);
      EXPECT_EQ(box.windowTitle(), "Orvane");
      act(box);
    });
    EXPECT_EQ(dialogs.Ask("Are you <sure>?", "Orvane"), answer);
  }
}

TEST_F(QtDialogsTest, ButtonsSpeakTheLanguageOfTheMoment) {
  bool chinese = false;
  dialogs.Chinese = [&] { return chinese; };
  for (const auto& [yes, no] : {std::pair("&Yes", "&No"), std::pair("是(&Y)", "否(&N)")}) {
    WhenItStands([yes = yes, no = no](QMessageBox& box) {
      EXPECT_EQ(box.button(QMessageBox::Yes)->text(), yes);
      EXPECT_EQ(box.button(QMessageBox::No)->text(), no);
      box.close();
    });
    dialogs.Ask("text", "Orvane");
    chinese = true;
  }
}

TEST_F(QtDialogsTest, BoxStandsInFrontOfAWindowThatStaysOnTop) {
  QWidget alert(nullptr, Qt::Dialog | Qt::WindowStaysOnTopHint);
  for (const bool shown : {false, true}) {
    alert.setVisible(shown);
    WhenItStands([shown](QMessageBox& box) {
      EXPECT_EQ(box.windowFlags().testFlag(Qt::WindowStaysOnTopHint), shown);
      box.close();
    });
    dialogs.Plain("text", "Orvane");
  }
}

}  // namespace
}  // namespace orvane::test
