#include "ui/look.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QShortcut>
#include <QTemporaryDir>

#include "support/world.h"
#include "ui/help.h"
#include "ui/parts.h"
#include "ui/twips.h"

namespace orvane::test {
namespace {

// The desktop, as a platform theme brings it; the plain one again in the end.
struct LookTest : testing::Test {
  static void Desktop(const QColor& ground, const QColor& ink, const QColor& field, int font) {
    QPalette palette(ground, ground);
    palette.setColor(QPalette::WindowText, ink);
    palette.setColor(QPalette::Base, field);
    QApplication::setPalette(palette);
    QFont face = QApplication::font();
    face.setPixelSize(font);
    QApplication::setFont(face);
    look::Apply(*qApp);
  }

  ~LookTest() override { Desktop({239, 239, 239}, Qt::black, Qt::white, 12); }
};

TEST_F(LookTest, DarkDesktopAndLargeFontAreTakenOver) {
  Desktop({50, 50, 50}, Qt::white, {30, 30, 30}, 18);
  EXPECT_TRUE(look::IsDark());
  EXPECT_EQ(QColor(look::kWindow), QColor(50, 50, 50));
  EXPECT_EQ(QColor(look::kCard), QColor(30, 30, 30));
  EXPECT_EQ(QColor(look::kInk), QColor(255, 255, 255));
  EXPECT_GT(QColor(look::Ink(kBlue)).lightness(), look::Exact(kBlue).lightness());
  EXPECT_DOUBLE_EQ(form_scale, 1.5);
  EXPECT_EQ(look::Face(12).pixelSize(), 18);
  EXPECT_EQ(Pixels(Place{15, 30, 150, 300}), QRect(2, 3, 15, 30));
}

TEST_F(LookTest, PlainDesktopHasTheDesign) {
  Desktop(Qt::black, Qt::yellow, Qt::black, 30);
  Desktop({239, 239, 239}, Qt::black, Qt::white, 9);
  EXPECT_FALSE(look::IsDark());
  EXPECT_EQ(QColor(look::kWindow), QColor(244, 246, 248));
  EXPECT_EQ(QColor(look::Ink(kBlue)), look::Exact(kBlue));
  EXPECT_DOUBLE_EQ(form_scale, 1);
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
