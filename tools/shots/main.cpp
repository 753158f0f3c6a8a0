// Takes a picture of every window in both languages and in its telling states. Clock, values and
// font are fixed, so that the same windows give the same pictures.
#include <QApplication>
#include <QDir>
#include <QImage>
#include <cstdio>

#include "shots/shots.h"
#include "ui/look.h"

namespace orvane::shots {
namespace {

struct LanguageRow {
  const char* suffix;
  Language language;
};

constexpr LanguageRow kLanguages[] = {
    {"en", Language::kEnglish},
    {"zh", Language::kChinese},
};

bool Save(const QImage& picture, const QString& path) {
  return picture.convertToFormat(QImage::Format_RGB888).save(path, "PNG");
}

bool Take(const Shot& shot, const LanguageRow& language, const QDir& directory) {
  Use(shot.desktop);
  Stage stage(language.language);
  const std::unique_ptr<QWidget> window = shot.make(stage);
  window->show();
  window->activateWindow();
  QApplication::processEvents();
  const QString path = directory.filePath(QString("%1-%2.png").arg(shot.name, language.suffix));
  if (Save(window->grab().toImage(), path)) return true;
  std::fprintf(stderr, "cannot write %s\n", qPrintable(path));
  return false;
}

// The offscreen platform says at every showing what it cannot do.
void PassOver(QtMsgType, const QMessageLogContext&, const QString& message) {
  if (message.startsWith("This plugin does not support")) return;
  if (message.startsWith("QStandardPaths: XDG_RUNTIME_DIR")) return;
  std::fprintf(stderr, "%s\n", qPrintable(message));
}

int TakeAll(const QString& directory, const QString& only) {
  QDir().mkpath(directory);
  bool all = true;
  bool any = false;
  for (const Shot& shot : Shots()) {
    if (!only.isEmpty() && only != shot.name) continue;
    any = true;
    for (const LanguageRow& language : kLanguages) all = Take(shot, language, directory) && all;
  }
  if (!any) std::fprintf(stderr, "there is no picture named %s\n", qPrintable(only));
  return all && any ? 0 : 1;
}

int Main(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr, "usage: %s DIRECTORY [RATIO [NAME]]\n", argv[0]);
    return 2;
  }
  qputenv("QT_QPA_PLATFORM", "offscreen");
  qputenv("TZ", "UTC");
  qputenv("QT_SCALE_FACTOR", argc > 2 ? argv[2] : "1");
  qInstallMessageHandler(PassOver);
  QApplication application(argc, argv);
  look::UseFamilies({"WenQuanYi Micro Hei"});
  look::Apply(application);
  return TakeAll(argv[1], argc > 3 ? argv[3] : "");
}

}  // namespace
}  // namespace orvane::shots

// orvane-shots DIRECTORY [RATIO [NAME]]
int main(int argc, char** argv) {
  return orvane::shots::Main(argc, argv);
}
