// F1: the page of the user's guide that belongs to a window.
#pragma once

#include <QString>
#include <functional>

#include "app/state.h"
#include "platform/dialogs.h"

class QWidget;

namespace orvane {

class Help {
 public:
  // Opens a page in the desktop's program for it. False when there is none.
  using Opener = std::function<bool(const QString& path)>;

  // The pages of an installed program whose executable lies in `program`, else those of the source
  // tree that it was built in; empty where neither is there.
  static QString PagesOf(const QString& program);

  // `pages`: the directory of the English pages, with the Chinese ones in `zh` below it.
  Help(const State& state, Dialogs& dialogs, QString pages, Opener open);

  // F1 in the window opens its page in the language of that moment. Where that fails, a box names
  // the page. This object outlives the window.
  void Offer(QWidget& window);

 private:
  void Show(const QString& window);

  const State& state_;
  Dialogs& dialogs_;
  const QString pages_;
  const Opener open_;
};

}  // namespace orvane
