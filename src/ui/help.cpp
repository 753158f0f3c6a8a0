#include "ui/help.h"

#include <QFileInfo>
#include <QShortcut>
#include <QWidget>
#include <utility>

namespace orvane {
namespace {

struct Page {
  const char* window;
  const char* page;
};

// The rest has the first page.
constexpr Page kPages[] = {
    {"main", "panel.md"},
    {"settings", "settings.md"},
    {"week", "schedules.md"},
    {"special_days", "schedules.md"},
    {"self_tests", "schedules.md"},
    {"log", "records.md"},
    {"day_history", "records.md"},
    {"history", "records.md"},
    {"shutdown_report", "records.md"},
    {"protection_check", "protection.md"},
    {"alert", "protection.md"},
};

}  // namespace

QString Help::PagesOf(const QString& program) {
  for (const char* way : {"/../../share/doc/orvane/docs", "/../../docs"}) {
    if (QFileInfo(program + way + "/README.md").exists()) {
      return QFileInfo(program + way).canonicalFilePath();
    }
  }
  return {};
}

Help::Help(const State& state, Dialogs& dialogs, QString pages, Opener open)
    : state_(state), dialogs_(dialogs), pages_(std::move(pages)), open_(std::move(open)) {}

void Help::Offer(QWidget& window) {
  QObject::connect(new QShortcut(QKeySequence::HelpContents, &window), &QShortcut::activated,
                   &window, [this, name = window.objectName()] { Show(name); });
}

void Help::Show(const QString& window) {
  QString page = "README.md";
  for (const Page& row : kPages) {
    if (window == row.window) page = row.page;
  }
  QString path = pages_ + '/' + page;
  const bool chinese = state_.language == Language::kChinese;
  if (const QString translated = pages_ + "/zh/" + page;
      chinese && QFileInfo(translated).exists()) {
    path = translated;
  }
  if (!pages_.isEmpty() && QFileInfo(path).exists() && open_(path)) return;
  const std::string name = (pages_.isEmpty() ? "docs/" + page : path).toStdString();
  dialogs_.Plain(Fill(state_.Text(Message::kNoHelp), {name}), "Orvane");
}

}  // namespace orvane
