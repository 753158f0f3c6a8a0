#include "ui/text_label.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPointer>
#include <algorithm>

#include "platform/utf8.h"

namespace orvane {
namespace {

// Enough for any sentence, little enough for any sender.
constexpr std::size_t kMostBytes = 600;

// As it is drawn. A common Chinese face has nothing but a blank for the degree Celsius.
QString Drawn(QString text) {
  return text.replace(u'℃', QStringLiteral("°C"));
}

}  // namespace

QString OneLine(std::string_view utf8) {
  const std::string_view head = WholeCharacters(utf8, kMostBytes);
  QString text = QString::fromUtf8(head.data(), static_cast<qsizetype>(head.size()));
  for (QChar& c : text) {
    if (!c.isPrint() && !c.isSurrogate()) c = u' ';
  }
  // Blanks inside are part of a text; line ends and the like at its ends are not.
  text = text.trimmed();
  if (head.size() < utf8.size()) text += u'…';
  return text;
}

TextLabel::TextLabel(const QString& name, const Place& place, const Style& style, QWidget* parent)
    : QLabel(parent), style_(style) {
  setObjectName(name);
  setTextFormat(Qt::PlainText);
  setGeometry(Pixels(place));
  // A click on a label is no click on what lies beneath.
  setAttribute(Qt::WA_NoMousePropagation);
  setAttribute(Qt::WA_OpaquePaintEvent, style_.ground.Valid());
  fitted_ = look::Face(style_.size, style_.bold);
}

void TextLabel::Follow(Label& label) {
  label.Observer = [self = QPointer(this), &label] {
    if (self) self->Show(label);
  };
  Show(label);
}

void TextLabel::Show(const Label& label) {
  Ink(look::Ink(label.ForeColor()));
  Show(OneLine(label.Caption()));
  setVisible(label.Visible());
}

void TextLabel::Show(const QString& text) {
  if (text == this->text()) return;
  setText(text);
  Fit();
  Speak();
}

void TextLabel::Ink(const look::Tone& ink) {
  if (ink == style_.ink) return;
  style_.ink = ink;
  update();
}

void TextLabel::Ground(const look::Tone& ground) {
  if (ground == style_.ground) return;
  style_.ground = ground;
  update();
}

void TextLabel::Bold(bool bold) {
  if (bold == style_.bold) return;
  style_.bold = bold;
  Fit();
  update();
}

void TextLabel::Spoken(const QString& before, const QString& after) {
  spoken_before_ = before;
  spoken_after_ = after;
  Speak();
}

void TextLabel::Speak() {
  setAccessibleName(spoken_before_ + text() + spoken_after_);
}

double TextLabel::Advance() const {
  return QFontMetricsF(fitted_).horizontalAdvance(shown_);
}

bool TextLabel::Fits() const {
  if (!style_.wrap) return Advance() <= width();
  const QRectF room(0, 0, width(), QWIDGETSIZE_MAX);
  return QFontMetricsF(fitted_).boundingRect(room, Qt::TextWordWrap, shown_).height() <= height();
}

void TextLabel::Fit() {
  shown_ = Drawn(text());
  // A line of text needs a little more height than its letters.
  const int tallest =
      std::max(style_.least, std::min(style_.size, static_cast<int>((height() - 1) / form_scale)));
  for (int size = tallest; size >= style_.least; --size) {
    fitted_ = look::Face(size, style_.bold);
    if (Fits()) break;
  }
  elided_ = !Fits();
  if (elided_ && !style_.wrap) {
    shown_ = QFontMetricsF(fitted_).elidedText(shown_, Qt::ElideRight, width());
  }
  // Marked up, so that the text is never taken for mark-up itself, and long ones are wrapped.
  if (elided_) {
    setToolTip("<p>" + text().toHtmlEscaped() + "</p>");
  } else if (!toolTip().isEmpty()) {
    setToolTip({});
  }
}

void TextLabel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  if (style_.ground.Valid()) painter.fillRect(rect(), QColor(style_.ground));
  painter.setFont(fitted_);
  painter.setPen(QColor(style_.ink));
  const int lines = style_.wrap ? Qt::TextWordWrap : Qt::TextSingleLine;
  painter.drawText(rect(), static_cast<int>(style_.alignment) | lines, shown_);
}

void TextLabel::resizeEvent(QResizeEvent* event) {
  QLabel::resizeEvent(event);
  Fit();
}

}  // namespace orvane
