#include "ui/tray_icon.h"

#include <QAction>
#include <QIcon>

#include "ui/words.h"

namespace orvane {
namespace {

QIcon FaceIcon(TrayFace face) {
  constexpr const char* kFiles[] = {":/tray_mains.svg", ":/tray_battery.svg", ":/tray_fault.svg",
                                    ":/tray_silent.svg"};
  return QIcon(kFiles[static_cast<std::size_t>(face)]);
}

}  // namespace

TrayIcon::TrayIcon(const State& state, Panel& panel, Engine& main, Forms& forms)
    : state_(state), panel_(panel), main_(main), forms_(forms) {
  panel.tray.Observer = [this] { Refresh(); };
}

void TrayIcon::Appear() {
  if (icon_) return;
  icon_ = std::make_unique<QSystemTrayIcon>();
  icon_->setIcon(FaceIcon(shown_));
  AddMenu();
  icon_->setContextMenu(&menu_);
  connect(icon_.get(), &QSystemTrayIcon::activated, this,
          [this](QSystemTrayIcon::ActivationReason reason) {
            if (reason == QSystemTrayIcon::Trigger || reason == QSystemTrayIcon::DoubleClick) {
              ShowMain();
            }
          });
  Refresh();
  icon_->show();
}

// Nothing comes back on the screen once the way down has begun.
void TrayIcon::ShowMain() {
  if (!main_.GoingDown()) forms_.Show(Form::kMain);
}

void TrayIcon::AddMenu() {
  connect(menu_.addAction(QString()), &QAction::triggered, this, [this] { ShowMain(); });
  connect(menu_.addAction(QString()), &QAction::triggered, this,
          [this] { main_.OpenProtectionCheck(); });
  menu_.addSeparator();
  connect(menu_.addAction(QString()), &QAction::triggered, this, [this] { main_.Exit(); });
}

// The menu follows the language with the tip.
void TrayIcon::Refresh() {
  if (!icon_) return;
  if (panel_.tray.Face() != shown_) {
    shown_ = panel_.tray.Face();
    icon_->setIcon(FaceIcon(shown_));
  }
  icon_->setToolTip(QString::fromStdString(panel_.tray.Tip()));
  const QList<QAction*> actions = menu_.actions();
  const Message words[] = {Message::kTrayShow, Message::kCheckEntry, Message::kExitEntry};
  const int places[] = {0, 1, 3};
  for (int i = 0; i < 3; ++i) {
    const QString text = Pick(state_, words[i]);
    if (actions[places[i]]->text() != text) actions[places[i]]->setText(text);
  }
}

}  // namespace orvane
