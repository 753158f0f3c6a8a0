#include "ui/layout_faults.h"

#include <QAbstractButton>
#include <QFontMetricsF>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <cmath>

#include "ui/text_label.h"

namespace orvane::test {
namespace {

// Letters are measured in fractions of a pixel and reported in whole ones, rounded outwards.
constexpr double kTolerance = 1.0;

struct Words {
  const QLabel* label;
  QRectF ink;  // in the window
};

QString Name(const QWidget& widget) {
  const QString name = widget.objectName();
  return name.isEmpty() ? widget.metaObject()->className() : name;
}

// Where the letters of a label stand, in its own coordinates.
QRectF Ink(const QLabel& label) {
  const auto* fitted = qobject_cast<const TextLabel*>(&label);
  const QString text = fitted ? fitted->Shown() : label.text();
  const QFontMetricsF metrics(fitted ? fitted->Fitted() : label.font());
  const QRectF room(label.contentsRect());
  const Qt::Alignment alignment = fitted ? fitted->Alignment() : label.alignment();
  if (fitted ? fitted->Wraps() : label.wordWrap()) {
    return metrics.boundingRect(room, static_cast<int>(alignment) | Qt::TextWordWrap, text);
  }
  const QRectF line =
      metrics.boundingRect(room, static_cast<int>(alignment) | Qt::TextSingleLine, text);
  // Upwards and downwards the letters of this text count, not those that it might have.
  const QRectF letters = metrics.tightBoundingRect(text).translated(0, metrics.ascent());
  return {line.left(), line.top() + letters.top(), line.width(), letters.height()};
}

bool Within(const QRectF& inner, const QRectF& outer) {
  return outer.adjusted(-kTolerance, -kTolerance, kTolerance, kTolerance).contains(inner);
}

// A label that fits its text to its box may cut what it shows, if it tells the whole on demand.
void CheckLabel(const QLabel& label, std::vector<QString>& faults) {
  const auto* fitted = qobject_cast<const TextLabel*>(&label);
  if (fitted && fitted->Elided()) {
    faults.push_back(Name(label) + " cuts its text: " + label.text());
  }
  if (!Within(Ink(label), QRectF(label.rect()))) {
    faults.push_back(Name(label) + " writes outside of its box: " + label.text());
  }
}

void CheckButton(const QAbstractButton& button, std::vector<QString>& faults) {
  const QSizeF text = QFontMetricsF(button.font()).size(Qt::TextShowMnemonic, button.text());
  const bool push = qobject_cast<const QPushButton*>(&button) != nullptr;
  constexpr double kPushMargins = 8;
  const double needed = push ? text.width() + kPushMargins : button.sizeHint().width();
  if (needed > button.width() || text.height() > button.height()) {
    faults.push_back(Name(button) + " cuts its text: " + button.text());
  }
}

void CheckOverlaps(const std::vector<Words>& all, std::vector<QString>& faults) {
  for (auto a = all.begin(); a != all.end(); ++a) {
    for (auto b = std::next(a); b != all.end(); ++b) {
      const QRectF shared = a->ink & b->ink;
      if (shared.width() <= kTolerance || shared.height() <= kTolerance) continue;
      faults.push_back(Name(*a->label) + " and " + Name(*b->label) + " overlap");
    }
  }
}

}  // namespace

std::vector<QString> LayoutFaults(const QWidget& window) {
  std::vector<QString> faults;
  std::vector<Words> words;
  for (const QWidget* widget : window.findChildren<QWidget*>()) {
    if (!widget->isVisibleTo(&window)) continue;
    const auto* label = qobject_cast<const QLabel*>(widget);
    const auto* button = qobject_cast<const QAbstractButton*>(widget);
    if (button && !button->text().isEmpty()) CheckButton(*button, faults);
    if (!label || label->text().isEmpty()) continue;
    CheckLabel(*label, faults);
    const QRect container = widget->parentWidget()->rect();
    if (!container.contains(widget->geometry())) {
      faults.push_back(Name(*widget) + " leaves its container");
    }
    words.push_back({label, Ink(*label).translated(label->mapTo(&window, QPointF(0, 0))) &
                                QRectF(window.rect())});
  }
  CheckOverlaps(words, faults);
  return faults;
}

}  // namespace orvane::test
