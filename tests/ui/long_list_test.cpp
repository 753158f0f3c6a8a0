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
#include "ui/parts.h"

namespace orvane::test {
namespace {

constexpr int kBillion = 1'000'000'000;

// A list on screen that writes down which of its lines it asked for.
struct ShownList {
  std::set<int> asked;
  LongList list{nullptr};

  explicit ShownList(int lines) {
    list.resize(300, 200);
    list.Lines().Fill(lines, [this](int row) {
      asked.insert(row);
      return QString("line\t%1").arg(row);
    });
    Present(list);
    list.setFocus();
    list.grab();
  }

  void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(&list, key, modifiers);
    QApplication::processEvents();
    list.grab();
  }
  int Current() const { return list.currentIndex().row(); }
  QRect Of(int row) { return list.visualRect(list.Lines().index(row)); }
};

TEST(LongList, AsksForTheLinesInViewAlone) {
  ShownList shown(kBillion);
  EXPECT_TRUE(shown.asked.contains(0));
  // No search through them all for a letter either.
  for (const Qt::Key key : {Qt::Key_End, Qt::Key_L}) shown.Press(key);
  EXPECT_TRUE(shown.asked.contains(kBillion - 1));
  EXPECT_LT(shown.asked.size(), 120U);
  ShownList empty(0);
  for (const Qt::Key key : {Qt::Key_End, Qt::Key_Home, Qt::Key_Down}) empty.Press(key);
  EXPECT_TRUE(empty.asked.empty());
  EXPECT_FALSE(empty.list.indexAt({5, 5}).isValid());
  EXPECT_EQ(shown.list.Lines().rowCount(shown.list.Lines().index(0)), 0);
}

TEST(LongList, GoesWhereTheKeysAndTheMouseSay) {
  ShownList shown(1000);
  const int page = shown.list.verticalScrollBar()->pageStep();
  ASSERT_GT(page, 3);
  EXPECT_EQ(shown.list.verticalScrollBar()->maximum(), 1000 - page);
  // The first key chooses the first line.
  const std::pair<Qt::Key, int> cases[] = {{Qt::Key_Down, 0},
                                           {Qt::Key_Up, 0},
                                           {Qt::Key_Down, 1},
                                           {Qt::Key_PageDown, 1 + page},
                                           {Qt::Key_End, 999},
                                           {Qt::Key_Down, 999},
                                           {Qt::Key_PageUp, 999 - page},
                                           {Qt::Key_Home, 0}};
  for (const auto& [key, row] : cases) {
    shown.Press(key);
    EXPECT_EQ(shown.Current(), row) << key;
    EXPECT_TRUE(shown.list.viewport()->rect().contains(shown.Of(row))) << key;
    // What is in view does not move.
    EXPECT_TRUE(row > 1 || shown.Of(0).top() == 0) << key;
  }
  shown.list.verticalScrollBar()->setValue(500);
  QTest::mouseClick(shown.list.viewport(), Qt::LeftButton, {}, shown.Of(503).center());
  EXPECT_EQ(shown.list.selectionModel()->selectedIndexes(),
            QModelIndexList{shown.list.Lines().index(503)});
}

TEST(LongList, ALineIsCopiedAndReadOutAsShown) {
  QAccessible::setActive(true);
  ShownList shown(kBillion);
  shown.Press(Qt::Key_End);
  shown.Press(Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QGuiApplication::clipboard()->text(), "line 999999999");
  auto* list = QAccessible::queryAccessibleInterface(&shown.list)->tableInterface();
  EXPECT_EQ(list->cellAt(7, 0)->text(QAccessible::Name), "line 7");
  QAccessible::setActive(false);
  shown.list.Lines().Fill(1, [](int) { return QString(1'000'000, u'x'); });
  EXPECT_FALSE(shown.list.horizontalScrollBar()->isVisible());
  EXPECT_EQ(shown.list.Lines().index(0).data().toString().size(), LineModel::kMostShown + 1);
}

TEST(LogText, ReadsUtf8OrElseTheOlderCodePage) {
  const std::pair<std::string, QString> cases[] = {
      {"9:05:33 市电失效\"", "9:05:33 市电失效\""},
      {"\xCA\xD0\xB5\xE7\xCA\xA7\xD0\xA7\"", "市电失效\""},
      {"\x81\x30\x84\x36", "¥"},  // four bytes for one character
      {"a\xFFz", "a\uFFFDz"},     // neither
  };
  for (const auto& [line, text] : cases) EXPECT_EQ(LogText(line), text) << line;
  // Of a long line the beginning. With one byte before them, no cut at an even place falls between
  // two characters.
  for (std::string line : {"电", "\xB5\xE7", "x电", "x\xB5\xE7", "xy电"}) {
    const std::string character = line.substr(line.find_first_not_of("xy"));
    while (line.size() < 100'000) line += character;
    const QString text = LogText(line);
    EXPECT_GT(text.size(), LineModel::kMostShown);
    EXPECT_LT(text.size(), 5000);
    EXPECT_EQ(text.count(u'电') + text.count(u'x') + text.count(u'y'), text.size()) << line[0];
  }
}

}  // namespace
}  // namespace orvane::test
