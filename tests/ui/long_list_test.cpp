// The list box for any number of lines, and the words of the log.
#include "ui/long_list.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QScrollBar>
#include <QTest>
#include <set>

#include "ui/log_text.h"

namespace orvane::test {
namespace {

constexpr int kBillion = 1'000'000'000;

// A list on screen that writes down which of its lines it asked for.
struct ShownList {
  std::set<int> asked;
  LongList list{nullptr};

  explicit ShownList(int lines, int height = 200) {
    list.resize(300, height);
    list.Lines().Fill(lines, [this](int row) {
      asked.insert(row);
      return QString("line %1").arg(row);
    });
    list.show();
    list.activateWindow();
    list.setFocus();
    Draw();
  }

  void Draw() {
    QApplication::processEvents();
    list.grab();
  }
  void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(&list, key, modifiers);
    Draw();
  }
  int Current() const { return list.currentIndex().row(); }
  bool InView(int row) {
    return list.viewport()->rect().contains(list.visualRect(list.Lines().index(row)));
  }
};

TEST(LongList, AsksForTheLinesInViewAlone) {
  ShownList shown(kBillion);
  EXPECT_TRUE(shown.asked.contains(0));
  EXPECT_LT(shown.asked.size(), 30U);
  shown.asked.clear();
  shown.Press(Qt::Key_End);
  EXPECT_EQ(shown.Current(), kBillion - 1);
  EXPECT_TRUE(shown.InView(kBillion - 1));
  EXPECT_TRUE(shown.asked.contains(kBillion - 1));
  EXPECT_LT(shown.asked.size(), 60U);
  shown.asked.clear();
  // No search through them all either.
  shown.Press(Qt::Key_L);
  EXPECT_LT(shown.asked.size(), 60U);
}

TEST(LongList, GoesWhereTheKeysSay) {
  ShownList shown(1000);
  const int page = shown.list.verticalScrollBar()->pageStep();
  ASSERT_GT(page, 3);
  struct Case {
    Qt::Key key;
    int row;
  };
  const Case cases[] = {
      {Qt::Key_Home, 0},
      {Qt::Key_Up, 0},
      {Qt::Key_Down, 1},
      {Qt::Key_PageDown, 1 + page},
      {Qt::Key_PageUp, 1},
      {Qt::Key_PageUp, 0},
      {Qt::Key_End, 999},
      {Qt::Key_Down, 999},
      {Qt::Key_Up, 998},
      {Qt::Key_PageDown, 999},
      {Qt::Key_PageUp, 999 - page},
  };
  for (const auto& [key, row] : cases) {
    shown.Press(key);
    EXPECT_EQ(shown.Current(), row) << key;
    EXPECT_TRUE(shown.InView(row)) << key;
    const QModelIndexList selected = shown.list.selectionModel()->selectedIndexes();
    ASSERT_LE(selected.size(), 1);
    EXPECT_TRUE(selected.isEmpty() || selected.first().row() == row);
  }
}

TEST(LongList, SelectsTheLineUnderTheMouse) {
  ShownList shown(1000);
  shown.list.verticalScrollBar()->setValue(500);
  const QRect rect = shown.list.visualRect(shown.list.Lines().index(503));
  QTest::mouseClick(shown.list.viewport(), Qt::LeftButton, {}, rect.center());
  EXPECT_EQ(shown.list.selectionModel()->selectedIndexes(),
            QModelIndexList{shown.list.Lines().index(503)});
  EXPECT_EQ(shown.list.indexAt(rect.center()).row(), 503);
}

TEST(LongList, HasNothingBehindItsLastLine) {
  ShownList shown(3);
  EXPECT_FALSE(shown.list.verticalScrollBar()->isVisible());
  EXPECT_FALSE(shown.list.indexAt({5, 190}).isValid());
  ShownList empty(0);
  for (const Qt::Key key : {Qt::Key_End, Qt::Key_Home, Qt::Key_Down}) empty.Press(key);
  EXPECT_FALSE(empty.list.currentIndex().isValid());
}

TEST(LongList, ALineIsCopiedAsShown) {
  LongList list(nullptr);
  list.Lines().Fill(2,
                    [](int row) { return row == 0 ? "one" : "\"\n2001-02-16 9:05:33 AC\tfail\""; });
  list.show();
  QTest::keyClick(&list, Qt::Key_End);
  QTest::keyClick(&list, Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QGuiApplication::clipboard()->text(), "\"2001-02-16 9:05:33 AC fail\"");
}

TEST(LongList, ShowsNoMoreOfALineThanCanBeRead) {
  LineModel model;
  model.Fill(1, [](int) { return QString(1'000'000, u'x'); });
  EXPECT_EQ(model.index(0).data().toString().size(), LineModel::kMostShown + 1);
}

TEST(LongList, TellsAScreenReaderItsLines) {
  ShownList shown(kBillion);
  shown.list.setAccessibleName("Log");
  QAccessible::setActive(true);
  shown.Press(Qt::Key_End);
  QAccessibleInterface* list = QAccessible::queryAccessibleInterface(&shown.list);
  ASSERT_NE(list, nullptr);
  EXPECT_EQ(list->text(QAccessible::Name), "Log");
  ASSERT_NE(list->tableInterface(), nullptr);
  EXPECT_EQ(list->tableInterface()->rowCount(), kBillion);
  EXPECT_EQ(list->tableInterface()->cellAt(7, 0)->text(QAccessible::Name), "line 7");
  QAccessible::setActive(false);
}

TEST(LogText, ReadsUtf8OrElseTheOlderCodePage) {
  struct Case {
    std::string line;
    QString text;
  };
  const Case cases[] = {
      {"", ""},
      {"\"\n2001-02-16 9:05:33 AC fail\"", "\"\n2001-02-16 9:05:33 AC fail\""},
      {"市电失效", "市电失效"},
      {"\"\n2001-02-16 9:05:33 \xCA\xD0\xB5\xE7\xCA\xA7\xD0\xA7\"",
       "\"\n2001-02-16 9:05:33 市电失效\""},
      {"\x81\x30\x84\x36", "¥"},  // four bytes for one character
      {"a\xFFz", "a\uFFFDz"},     // neither
  };
  for (const Case& c : cases) EXPECT_EQ(LogText(c.line), c.text) << c.line;
}

TEST(LogText, TakesTheBeginningOfALongLine) {
  std::string utf8, gb;
  for (int i = 0; i < 100'000; ++i) utf8 += "电";
  for (int i = 0; i < 100'000; ++i) gb += "\xB5\xE7";
  // With one byte before them, no cut at an even place falls between two characters.
  for (const std::string& line : {utf8, 'x' + utf8, "xy" + utf8, gb, 'x' + gb}) {
    const QString text = LogText(line);
    EXPECT_GT(text.size(), LineModel::kMostShown);
    EXPECT_LT(text.size(), 5000);
    EXPECT_EQ(text.count(QChar::ReplacementCharacter), 0) << line.substr(0, 4);
    EXPECT_GE(text.count(u'电'), text.size() - 2);
  }
}

}  // namespace
}  // namespace orvane::test
