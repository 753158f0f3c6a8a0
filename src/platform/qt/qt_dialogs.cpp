#include "platform/qt/qt_dialogs.h"

#include <QAbstractButton>
#include <QApplication>
#include <QWindow>
#include <utility>

namespace orvane {
namespace {

// A lone carriage return ends a line as well; the box itself knows line feeds alone.
QString Text(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()))
      .replace("\r\n", "\n")
      .replace('\r', '\n');
}

constexpr std::pair<QMessageBox::StandardButton, const char*> kChineseButtons[] = {
    {QMessageBox::Ok, "确定"}, {QMessageBox::Yes, "是(&Y)"}, {QMessageBox::No, "否(&N)"}};

}  // namespace

// The box has no parent widget, since that might be unloaded while the box stands; the window
// manager keeps it above the active window all the same.
int QtDialogs::Show(QMessageBox::Icon icon, std::string_view text, std::string_view title,
                    QMessageBox::StandardButtons buttons, QMessageBox::StandardButton by_default) {
  QMessageBox box(icon, Text(title), Text(text), buttons);
  box.setTextFormat(Qt::PlainText);
  if (Chinese && Chinese()) {
    for (const auto& [button, words] : kChineseButtons) {
      if (QAbstractButton* there = box.button(button)) there->setText(words);
    }
  }
  box.setDefaultButton(by_default);
  box.setWindowModality(Qt::ApplicationModal);
  // Behind a window that stays on top, the alert, nobody could answer it.
  for (const QWidget* window : QApplication::topLevelWidgets()) {
    if (window->isVisible() && window->windowFlags().testFlag(Qt::WindowStaysOnTopHint)) {
      box.setWindowFlag(Qt::WindowStaysOnTopHint);
    }
  }
  if (const QWidget* owner = QApplication::activeWindow()) {
    box.winId();
    box.windowHandle()->setTransientParent(owner->windowHandle());
  }
  return box.exec();
}

void QtDialogs::Exclamation(std::string_view text, std::string_view title) {
  Show(QMessageBox::Warning, text, title, QMessageBox::Ok, QMessageBox::Ok);
}

void QtDialogs::Plain(std::string_view text, std::string_view title) {
  Show(QMessageBox::NoIcon, text, title, QMessageBox::Ok, QMessageBox::Ok);
}

bool QtDialogs::Ask(std::string_view text, std::string_view title) {
  return Show(QMessageBox::Question, text, title, QMessageBox::Yes | QMessageBox::No,
              QMessageBox::No) == QMessageBox::Yes;
}

}  // namespace orvane
