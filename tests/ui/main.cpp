// Windows need an application: it looks as the program's own does and lives as long as the tests.
#include <gtest/gtest.h>

#include <QApplication>
#include <cstdio>

#include "ui/look.h"

namespace {

// The offscreen platform says at every showing what it cannot do.
void PassOver(QtMsgType, const QMessageLogContext&, const QString& message) {
  if (!message.startsWith("This plugin does not support")) {
    std::fprintf(stderr, "%s\n", qPrintable(message));
  }
}

}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  qputenv("TZ", "UTC");
  qInstallMessageHandler(PassOver);
  QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  orvane::look::UseFamilies({"WenQuanYi Micro Hei"});
  orvane::look::Apply(application);
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
