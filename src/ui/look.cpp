#include "ui/look.h"

#include <QApplication>
#include <QFontInfo>
#include <QIcon>
#include <QPalette>
#include <QPixmapCache>
#include <QProxyStyle>
#include <algorithm>

#include "ui/twips.h"

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

// The desktop's own palette counts, rather than the design.
bool desktop_colours = false;

QColor Mixed(const QColor& ground, const QColor& ink, int percent) {
  const auto part = [percent](int from, int to) { return from + (to - from) * percent / 100; };
  return {part(ground.red(), ink.red()), part(ground.green(), ink.green()),
          part(ground.blue(), ink.blue())};
}

// The ground of a desktop that has no colours of its own.
constexpr QColor kPlainWindow{239, 239, 239};

// The font size for which the forms are designed.
constexpr double kDesignedFont = 12;
constexpr double kLargest = 3;

// By how much the desktop's font is larger. A smaller one leaves the design as it is.
double ScaleOf(const QFont& font) {
  return std::clamp(QFontInfo(font).pixelSize() / kDesignedFont, 1.0, kLargest);
}

// The icons of message boxes: the desktop's, or drawings that are sharp at every pixel ratio.
class FormStyle : public QProxyStyle {
 public:
  FormStyle() : QProxyStyle("Fusion") {}

  QIcon standardIcon(StandardPixmap which, const QStyleOption* option,
                     const QWidget* widget) const override {
    if (which == SP_MessageBoxWarning) return QIcon::fromTheme("dialog-warning", Own("warning"));
    if (which == SP_MessageBoxQuestion) return QIcon::fromTheme("dialog-question", Own("question"));
    return QProxyStyle::standardIcon(which, option, widget);
  }

 private:
  static QIcon Own(const char* name) { return QIcon(QString(":/%1.svg").arg(name)); }
};

QPalette LightPalette() {
  QPalette palette(QColor{kWindow}, QColor{kWindow});
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    palette.setColor(role, kInk);
    palette.setColor(QPalette::Disabled, role, kEdge);
  }
  palette.setColor(QPalette::Base, kCard);
  palette.setColor(QPalette::AlternateBase, kWindow);
  palette.setColor(QPalette::ToolTipBase, kCard);
  palette.setColor(QPalette::ToolTipText, kInk);
  palette.setColor(QPalette::PlaceholderText, kPlaceholderInk);
  palette.setColor(QPalette::Highlight, kAccent);
  palette.setColor(QPalette::HighlightedText, Qt::white);
  return palette;
}

// The style draws the edges of controls by so much darker than the window, which nobody sees where
// that is dark. These controls use the colour of the window for nothing else.
void DrawEdges() {
  constexpr int kDarkerBy = 140;
  QPalette palette = QApplication::palette();
  palette.setColor(QPalette::Window, QColor(kEdge).lighter(kDarkerBy));
  for (const char* control : {"QPushButton", "QToolButton", "QRadioButton", "QCheckBox",
                              "QAbstractSpinBox", "QComboBox", "QLineEdit"}) {
    QApplication::setPalette(palette, control);
  }
}

}  // namespace

Tone::operator QColor() const {
  if (!desktop_colours || kind_ == Kind::kGiven) return designed_;
  const QPalette palette = QApplication::palette();
  const QColor ground = palette.color(QPalette::Window);
  switch (kind_) {
    case Kind::kMixed:
      return Mixed(ground, palette.color(QPalette::WindowText), percent_);
    case Kind::kWords:
      // Half as far from white.
      return IsDark() ? Mixed(designed_, Qt::white, 55) : designed_;
    case Kind::kBase:
      return palette.color(QPalette::Base);
    case Kind::kAccent:
      return palette.color(QPalette::Highlight);
    case Kind::kTint:
      return IsDark() ? Mixed(ground, kDangerZone, percent_) : designed_;
    case Kind::kGiven:
      break;
  }
  return designed_;
}

bool IsDark() {
  constexpr int kMiddle = 128;
  return desktop_colours && QApplication::palette().color(QPalette::Window).lightness() < kMiddle;
}

QFont Face(int pixel_size, bool bold) {
  QFont font(QApplication::font());
  font.setFamilies(Families());
  font.setPixelSize(qRound(pixel_size * form_scale));
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
  form_scale = ScaleOf(QApplication::font());
  // A desktop that is dark or has colours of its own has them in the palette by now.
  const QPalette palette = QApplication::palette();
  desktop_colours = palette.color(QPalette::Window) != kPlainWindow ||
                    palette.color(QPalette::WindowText) != Qt::black ||
                    palette.color(QPalette::Base) != Qt::white;
  application.setStyle(new FormStyle);
  if (!desktop_colours) application.setPalette(LightPalette());
  if (IsDark()) DrawEdges();
  application.setFont(Face(kTextSize));
  application.setWindowIcon(QIcon(":/orvane.svg"));
}

}  // namespace orvane::look
