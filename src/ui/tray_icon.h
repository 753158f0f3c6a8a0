// The icon in the tray of the desktop (StatusNotifierItem, or the older one of X11): the state at a
// glance while the window lies below others.
#pragma once

#include <QMenu>
#include <QObject>
#include <QSystemTrayIcon>
#include <memory>

#include "app/panel.h"
#include "app/state.h"
#include "frame/engine.h"
#include "platform/forms.h"

namespace orvane {

class TrayIcon : public QObject {
  Q_OBJECT

 public:
  // Follows `panel`.
  TrayIcon(const State& state, Panel& panel, Engine& main, Forms& forms);

  // Shows the icon from now on. The kind of tray that there is at this moment decides on its own
  // kind for good.
  void Appear();

 private:
  void ShowMain();
  void Refresh();
  void AddMenu();

  const State& state_;
  Panel& panel_;
  Engine& main_;
  Forms& forms_;
  QMenu menu_;
  std::unique_ptr<QSystemTrayIcon> icon_;
  TrayFace shown_ = TrayFace::kSilent;
};

}  // namespace orvane
