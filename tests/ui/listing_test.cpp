// What every window holds, in both languages and in all its telling states, against the listings in
// tests/ui/listings and the pictures of the pages: a person looks at what has changed there.
// `tools/listings` and `tools/screenshots` make them anew. A text that has no room is marked `cut`.
#include <gtest/gtest.h>

#include <QAccessible>
#include <QAction>
#include <QFile>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMetaEnum>
#include <QPushButton>
#include <memory>

#include "app/messages.h"
#include "shots/shots.h"
#include "ui/parts.h"
#include "ui/text_label.h"

namespace orvane::test {
namespace {

QString OneLine(QString text) {
  return text.replace('\n', "\\n").replace('\r', "\\r");
}

// Whether its words have no room. A label of fixed place ends in points then.
bool Cuts(const QWidget& part, const QString& text) {
  if (const auto* label = qobject_cast<const TextLabel*>(&part)) return label->Elided();
  if (text.isEmpty() || qobject_cast<const QLineEdit*>(&part)) return false;
  constexpr int kPushMargins = 8;
  const bool push = qobject_cast<const QPushButton*>(&part) != nullptr;
  const QSize words = part.fontMetrics().size(Qt::TextShowMnemonic, text);
  const int needed = push ? words.width() + kPushMargins : part.sizeHint().width();
  return needed > part.width() || words.height() > part.height();
}

// Role, name, text with its height, what a screen reader says besides, tool
// tip, how the keyboard comes here, and place in the window.
QString LineOf(QWidget& part, const QWidget& window) {
  QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(&part);
  QString line = QMetaEnum::fromType<QAccessible::Role>().valueToKey(spoken->role());
  line += ' ' + part.objectName();
  const QString text = part.property("text").toString();
  const auto* label = qobject_cast<const TextLabel*>(&part);
  const int height = (label ? label->Fitted() : part.font()).pixelSize();
  if (!text.isEmpty()) line += QString(" [%1] %2px").arg(text).arg(height);
  const QString name = spoken->text(QAccessible::Name);
  if (part.focusPolicy() != Qt::NoFocus) {
    line += QString(' ') + QMetaEnum::fromType<Qt::FocusPolicy>().valueToKey(part.focusPolicy());
    EXPECT_NE(name, "") << line.toStdString();
  }
  if (!name.isEmpty() && name != text) line += " spoken [" + name + ']';
  const QString described = spoken->text(QAccessible::Description);
  if (!described.isEmpty() && described != part.toolTip()) line += " described [" + described + ']';
  if (!part.toolTip().isEmpty()) line += " tip [" + part.toolTip() + ']';
  if (!part.isEnabled()) line += " disabled";
  if (const auto* push = qobject_cast<QPushButton*>(&part); push && push->isDefault()) {
    line += " default";
  }
  if (Cuts(part, text)) line += " cut";
  const QPoint place = part.mapTo(&window, QPoint(0, 0));
  line +=
      QString(" %1,%2 %3x%4").arg(place.x()).arg(place.y()).arg(part.width()).arg(part.height());
  return OneLine(line) + '\n';
}

QString MenusOf(const QWidget& window) {
  QString lines;
  for (const auto* bar : window.findChildren<QMenuBar*>()) {
    for (const QAction* top : bar->actions()) {
      lines += "menu " + top->menu()->objectName() + " [" + top->text() + "]\n";
      for (const QAction* entry : top->menu()->actions()) {
        lines += entry->isSeparator() ? QString("  -\n")
                                      : "  " + entry->objectName() + " [" + entry->text() + "]\n";
      }
    }
  }
  return lines;
}

// Named parts and pictures only: the others belong to the toolkit.
QString ListingOf(const QWidget& window) {
  QString lines = "window " + window.objectName() + " [" + window.windowTitle() + "] ";
  const QSize least = window.minimumSize().expandedTo(window.minimumSizeHint());
  lines += QString("%1x%2 ").arg(window.width()).arg(window.height());
  lines += QString("at least %1x%2\n").arg(least.width()).arg(least.height()) + MenusOf(window);
  for (auto* part : window.findChildren<QWidget*>()) {
    const auto* label = qobject_cast<QLabel*>(part);
    const bool picture = label && !label->pixmap().isNull();
    if (!part->isVisibleTo(&window) || (part->objectName().isEmpty() && !picture)) continue;
    if (part->objectName().startsWith("qt_") || qobject_cast<QMenu*>(part)) continue;
    lines += LineOf(*part, window);
  }
  return lines;
}

// The listing as it was last looked at; with ORVANE_RENEW set, it is written anew first.
QString Reviewed(const std::string& name, const QString& now) {
  QFile file(QString(ORVANE_LISTINGS "/%1.txt").arg(name.c_str()));
  if (qEnvironmentVariableIsSet("ORVANE_RENEW") && file.open(QIODevice::WriteOnly)) {
    file.write(now.toUtf8());
    file.close();
  }
  return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

TEST(ListingTest, WindowsHoldWhatSomebodyHasLookedAt) {
  for (const shots::Shot& shot : shots::Shots()) {
    shots::Use(shot.desktop);
    for (const Language language : {Language::kEnglish, Language::kChinese}) {
      shots::Stage stage(language);
      const std::unique_ptr<QWidget> window = shot.make(stage);
      Present(*window);
      static const QStringList kGrow = {"history", "log", "day_history", "shutdown_report"};
      EXPECT_EQ(window->minimumSize() == window->maximumSize(),
                !kGrow.contains(window->objectName()));
      const std::string name =
          std::string(shot.name) + (language == Language::kEnglish ? "-en" : "-zh");
      const QString now = ListingOf(*window);
      EXPECT_EQ(now.toStdString(), Reviewed(name, now).toStdString()) << name;
      const QImage page(QString(ORVANE_SCREENS "/%1.png").arg(name.c_str()));
      // The palette of the pages moves colours a little.
      EXPECT_EQ(Difference(window->grab().toImage(), page, 40), "") << name;
    }
  }
  shots::Use(shots::Desktop::kPlain);
}

TEST(ListingTest, MessagesSayWhatSomebodyHasRead) {
  QString now;
  for (std::size_t i = 0; i < kMessages; ++i) {
    for (const Language language : {Language::kEnglish, Language::kChinese}) {
      const std::string_view text = MessageText(static_cast<Message>(i), language);
      now += OneLine(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()))) + '\n';
    }
  }
  EXPECT_EQ(now.toStdString(), Reviewed("messages", now).toStdString());
}

}  // namespace
}  // namespace orvane::test
