#include "ui/text_label.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace orvane::test {
namespace {

TEST(OneLine, LeavesNothingThatBreaksALine) {
  const std::pair<std::string, const char*> cases[] = {
      {"\r\na\r\nb\tc\r\n", "a  b c"},
      {std::string("x\0y", 3), "x y"},
      {"\x1b[31mred", "[31mred"},
      {"正 常", "正 常"},
      {"\xe2\x80\xa8line\xe2\x80\xaeright to left", "line right to left"},
  };
  for (const auto& [text, shown] : cases) EXPECT_EQ(OneLine(text).toStdString(), shown);
  for (std::string flood : {"", "x", "xx"}) {
    while (flood.size() < 10'000) flood += "电";
    const QString shown = OneLine(flood);
    EXPECT_LE(shown.size(), 601);
    EXPECT_TRUE(shown.endsWith(u'…'));
    EXPECT_FALSE(shown.contains(QChar::ReplacementCharacter));
  }
}

TEST(TextLabelTest, ShrinksThenCutsAndTellsTheWhole) {
  TextLabel label("label", {0, 0, 1500, 300}, {.size = 14, .least = 10}, nullptr);
  label.Show(QString("not so short a text"));
  EXPECT_LT(label.Fitted().pixelSize(), 14);
  EXPECT_FALSE(label.Elided());
  label.Show(QString("a text that no size makes <b>fit</b>"));
  EXPECT_TRUE(label.Elided());
  EXPECT_LE(label.Advance(), 100);
  EXPECT_TRUE(label.toolTip().contains("no size makes &lt;b&gt;fit&lt;/b&gt;"));
  label.Show(QString("short"));
  EXPECT_EQ(label.Fitted().pixelSize(), 14);
  EXPECT_EQ(label.toolTip(), "");
}

// A caption of any origin goes through OneLine.
TEST(TextLabelTest, FollowsAFieldThatMayOutliveIt) {
  Label field;
  auto label =
      std::make_unique<TextLabel>("label", Place{0, 0, 1500, 300}, TextLabel::Style{}, nullptr);
  label->Follow(field);
  field.Caption("one\r\ntwo");
  EXPECT_EQ(label->text(), "one  two");
  field.Visible(false);
  EXPECT_TRUE(label->isHidden());
  label.reset();
  field.Caption("nobody looks");
}

}  // namespace
}  // namespace orvane::test
