#include "ui/look.h"

#include <QApplication>
#include <QIcon>
#include <QPalette>
#include <QPixmapCache>
#include <QStyleFactory>

// The pictures lie in a library; nothing else would draw them into the program. The macro works
// outside of namespaces only.
static void InitPictures() {
  Q_INIT_RESOURCE(pictures);
}

namespace orvane::look {
namespace {

constexpr int kDrawingsKept = 1024;  // KB

// The forms' own face first, then the faces that hold Chinese and Latin alike.
QStringList& Families() {
  static QStringList families = {"宋体",
                                 "SimSun",
                                 "Noto Sans CJK SC",
                                 "Noto Sans SC",
                                 "Source Han Sans SC",
                                 "WenQuanYi Micro Hei",
                                 "WenQuanYi Zen Hei",
                                 "Droid Sans Fallback"};
  return families;
}

QPalette LightPalette() {
  QPalette palette(kWindow, kWindow);
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    palette.setColor(role, kInk);
    palette.setColor(QPalette::Disabled, role, kEdge);
  }
  palette.setColor(QPalette::Base, kCard);
  palette.setColor(QPalette::AlternateBase, kWindow);
  palette.setColor(QPalette::ToolTipBase, kCard);
  palette.setColor(QPalette::ToolTipText, kInk);
  palette.setColor(QPalette::PlaceholderText, kQuietInk);
  palette.setColor(QPalette::Highlight, kAccent);
  palette.setColor(QPalette::HighlightedText, Qt::white);
  return palette;
}

}  // namespace

QFont Face(int pixel_size, bool bold) {
  QFont font(QApplication::font());
  font.setFamilies(Families());
  font.setPixelSize(pixel_size);
  font.setBold(bold);
  return font;
}

void UseFamilies(const QStringList& families) {
  Families() = families;
}

void Apply(QApplication& application) {
  InitPictures();
  // Every window that opens has its buttons drawn and kept anew; the usual room for such drawings,
  // 10 MB, would be filled by and by with those of windows long gone.
  QPixmapCache::setCacheLimit(kDrawingsKept);
  application.setStyle(QStyleFactory::create("Fusion"));
  application.setPalette(LightPalette());
  application.setFont(Face(kTextSize));
  application.setWindowIcon(QIcon(":/orvane.svg"));
}

}  // namespace orvane::look
