#include "ui/look.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QShortcut>
#include <QTemporaryDir>

#include "shots/shots.h"
#include "support/world.h"
#include "ui/help.h"
#include "ui/parts.h"
#include "ui/twips.h"

namespace orvane::test {
namespace {

TEST(LookTest, ASmallerFontThanTheDesignsLeavesItAsItIs) {
  QFont small = QApplication::font();
  small.setPixelSize(9);
  QApplication::setFont(small);
  look::Apply(*qApp);
  EXPECT_DOUBLE_EQ(form_scale, 1);
  shots::Use(shots::Desktop::kPlain);
}

TEST(HelpTest, OpensThePageOfTheWindowInItsLanguage) {
  const QTemporaryDir folder;
  QDir(folder.path()).mkpath("docs/zh");
  for (const char* page : {"README.md", "panel.md", "records.md", "zh/records.md"}) {
    QFile file(folder.filePath(QString("docs/") + page));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  }
  QDir(folder.path()).mkpath("build/release");
  const QString pages = Help::PagesOf(folder.filePath("build/release"));
  EXPECT_EQ(pages, folder.filePath("docs"));
  EXPECT_EQ(Help::PagesOf(folder.path()), "");

  World world;
  QString opened;
  bool works = true;
  Help help(world.state, world.dialogs, pages, [&](const QString& path) {
    opened = path;
    return works;
  });
  const auto press = [&](const char* name) {
    QWidget window;
    window.setObjectName(name);
    help.Offer(window);
    Q_EMIT window.findChild<QShortcut*>()->activated();
  };
  press("log");
  EXPECT_EQ(opened, pages + "/records.md");
  world.state.language = Language::kChinese;
  press("day_history");
  EXPECT_EQ(opened, pages + "/zh/records.md");
  press("main");
  EXPECT_EQ(opened, pages + "/panel.md");
  press("about");
  EXPECT_EQ(opened, pages + "/README.md");
  EXPECT_EQ(world.events, Events{});
  world.state.language = Language::kEnglish;
  works = false;
  press("main");
  press("settings");
  EXPECT_EQ(
      world.events,
      (Events{
          "Plain [Orvane] The page could not be opened: " + pages.toStdString() + "/panel.md",
          "Plain [Orvane] The page could not be opened: " + pages.toStdString() + "/settings.md"}));
}

}  // namespace
}  // namespace orvane::test
