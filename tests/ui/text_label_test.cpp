#include "ui/text_label.h"

#include <gtest/gtest.h>

#include <QWidget>
#include <string>

namespace orvane::test {
namespace {

TEST(OneLine, LeavesNothingThatBreaksALine) {
  struct Row {
    std::string text;
    const char* shown;
  };
  const Row rows[] = {
      {"Ready", "Ready"},
      {"", ""},
      {"\r\nNO CARRIER\r\n", "NO CARRIER"},
      {"a\r\nb\tc", "a  b c"},
      {std::string("x\0y", 3), "x y"},
      {"\x1b[31mred", "[31mred"},
      {"正 常", "正 常"},
      {"\xe2\x80\xa8line\xe2\x80\xaeright to left", "line right to left"},
  };
  for (const Row& row : rows) EXPECT_EQ(OneLine(row.text).toStdString(), row.shown);
}

TEST(OneLine, BoundsTextWithoutCuttingACharacter) {
  for (const std::size_t lead : {0, 1, 2}) {
    std::string flood(lead, 'x');
    while (flood.size() < 1'000'000) flood += "电";
    const QString shown = OneLine(flood);
    EXPECT_LE(shown.size(), 601);
    EXPECT_TRUE(shown.endsWith(u'…'));
    EXPECT_FALSE(shown.contains(QChar::ReplacementCharacter));
  }
}

class TextLabelTest : public testing::Test {
 protected:
  static constexpr TextLabel::Style kStyle{.size = 14, .least = 10};

  QWidget window;
  TextLabel label{"label", {0, 0, 1500, 300}, kStyle, &window};
};

TEST_F(TextLabelTest, ShrinksThenCutsAndTellsTheWhole) {
  label.Show(QString("short"));
  EXPECT_EQ(label.Fitted().pixelSize(), 14);
  EXPECT_EQ(label.Shown(), "short");
  EXPECT_EQ(label.toolTip(), "");

  label.Show(QString("not so short a text"));
  EXPECT_LT(label.Fitted().pixelSize(), 14);
  EXPECT_FALSE(label.Elided());

  label.Show(QString("a text that no size makes <b>fit</b>"));
  EXPECT_EQ(label.Fitted().pixelSize(), 10);
  EXPECT_TRUE(label.Elided());
  EXPECT_LE(label.Advance(), 100);
  EXPECT_TRUE(label.toolTip().contains("no size makes &lt;b&gt;fit&lt;/b&gt;"));

  label.Show(QString("short"));
  EXPECT_FALSE(label.Elided());
  EXPECT_EQ(label.toolTip(), "");
}

TEST_F(TextLabelTest, FollowsTheFieldOfThePanel) {
  Label field;
  field.Caption("one");
  label.Follow(field);
  EXPECT_EQ(label.text(), "one");
  field.Caption("two");
  EXPECT_EQ(label.text(), "two");
  field.Visible(false);
  EXPECT_TRUE(label.isHidden());
  field.Visible(true);
  EXPECT_FALSE(label.isHidden());
}

TEST_F(TextLabelTest, IsForgottenByAFieldThatOutlivesIt) {
  Label field;
  {
    TextLabel gone("gone", {0, 0, 300, 300}, kStyle, &window);
    gone.Follow(field);
  }
  field.Caption("nobody looks");
  EXPECT_EQ(field.Caption(), "nobody looks");
}

TEST_F(TextLabelTest, SpeaksWithWhatStandsAroundIt) {
  label.Spoken("Load, ", " %");
  label.Show(QString("35"));
  EXPECT_EQ(label.accessibleName(), "Load, 35 %");
  label.Spoken("负载, ", " %");
  EXPECT_EQ(label.accessibleName(), "负载, 35 %");
}

}  // namespace
}  // namespace orvane::test
