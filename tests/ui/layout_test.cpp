// Every window, in both languages and in all its telling states: all words are whole, and none
// stands on another.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAccessible>
#include <QFontMetricsF>
#include <QLabel>
#include <QPushButton>
#include <QRegularExpression>
#include <memory>

#include "shots/shots.h"
#include "ui/parts.h"
#include "ui/text_label.h"

namespace orvane::test {
namespace {

// Letters are measured in fractions of a pixel and reported in whole ones, rounded outwards.
constexpr double kTolerance = 1.0;
constexpr QMarginsF kRounding{kTolerance, kTolerance, kTolerance, kTolerance};

// Where the letters of a label stand, in its own coordinates.
QRectF Ink(const QLabel& label) {
  const auto* fitted = qobject_cast<const TextLabel*>(&label);
  const QString text = fitted ? fitted->Shown() : label.text();
  const QFontMetricsF metrics(fitted ? fitted->Fitted() : label.font());
  const QRectF room(label.contentsRect());
  const int alignment = static_cast<int>(fitted ? fitted->Alignment() : label.alignment());
  if (fitted ? fitted->Wraps() : label.wordWrap()) {
    return metrics.boundingRect(room, alignment | Qt::TextWordWrap, text);
  }
  const QRectF line = metrics.boundingRect(room, alignment | Qt::TextSingleLine, text);
  // Upwards and downwards the letters of this text count, not those that it might have.
  const QRectF letters = metrics.tightBoundingRect(text).translated(0, metrics.ascent());
  return {line.left(), line.top() + letters.top(), line.width(), letters.height()};
}

bool Cuts(const QLabel& label) {
  const auto* fitted = qobject_cast<const TextLabel*>(&label);
  return fitted && fitted->Elided();
}

bool Cuts(const QAbstractButton& button) {
  const QSizeF text = QFontMetricsF(button.font()).size(Qt::TextShowMnemonic, button.text());
  constexpr double kPushMargins = 8;
  const bool push = qobject_cast<const QPushButton*>(&button) != nullptr;
  const double needed = push ? text.width() + kPushMargins : button.sizeHint().width();
  return needed > button.width() || text.height() > button.height();
}

// One sentence for each fault among the labels and buttons that can be seen in `window`.
QStringList LayoutFaults(const QWidget& window) {
  QStringList faults;
  for (const auto* button : window.findChildren<QAbstractButton*>()) {
    if (button->isVisibleTo(&window) && !button->text().isEmpty() && Cuts(*button)) {
      faults << button->objectName() + " cuts its text: " + button->text();
    }
  }
  std::vector<std::pair<QString, QRectF>> words;  // with their place in the window
  for (const auto* label : window.findChildren<QLabel*>()) {
    if (!label->isVisibleTo(&window) || label->text().isEmpty()) continue;
    const QString name = label->objectName();
    const QRectF ink = Ink(*label);
    if (Cuts(*label)) faults << name + " cuts its text: " + label->text();
    if (!(QRectF(label->rect()) + kRounding).contains(ink)) {
      faults << name + " writes outside of its box: " + label->text();
    }
    if (!label->parentWidget()->rect().contains(label->geometry())) {
      faults << name + " leaves its container";
    }
    const QRectF place =
        ink.translated(label->mapTo(&window, QPointF(0, 0))) & QRectF(window.rect());
    for (const auto& [other, its_place] : words) {
      const QRectF shared = place & its_place;
      if (shared.width() <= kTolerance || shared.height() <= kTolerance) continue;
      faults << other + " and " + name + " overlap";
    }
    words.emplace_back(name, place);
  }
  return faults;
}

// A value that the UPS has told.
const QRegularExpression kDatum(
    "^(model|version|battery_count|rated_\\w+|battery_voltage) cuts its");

// What takes the keyboard has to have a name.
bool Nameless(QWidget& part) {
  return part.isVisible() && part.focusPolicy() & Qt::TabFocus &&
         QAccessible::queryAccessibleInterface(&part)->text(QAccessible::Name).isEmpty();
}

TEST(LayoutTest, WordsFitAndKeepApart) {
  for (const shots::Shot& shot : shots::Shots()) {
    for (const Language language : {Language::kEnglish, Language::kChinese}) {
      SCOPED_TRACE(std::string(shot.name) + (language == Language::kEnglish ? " en" : " zh"));
      shots::Stage stage(language);
      const std::unique_ptr<QWidget> window = shot.make(stage);
      Present(*window);
      EXPECT_EQ(window->minimumSize(), window->maximumSize());
      for (const QString& fault : LayoutFaults(*window)) {
        // A device may say more about itself than there is room for; the rest is in the tool tip.
        EXPECT_TRUE(fault.contains(kDatum)) << fault.toStdString();
      }
      for (auto* part : window->findChildren<QWidget*>()) {
        EXPECT_FALSE(Nameless(*part)) << part->objectName().toStdString();
      }
    }
  }
}

}  // namespace
}  // namespace orvane::test
