#include "ui/windows.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QDeadlineTimer>
#include <QEvent>
#include <QScreen>
#include <QThread>
#include <QTimer>
#include <QWidget>
#include <QWindow>
#include <chrono>
#include <utility>

namespace orvane {
namespace {

// Closes one after the other, the innermost first, as the user would; one that stays is left.
void CloseAll(QWidget* (*active)()) {
  while (QWidget* widget = active()) {
    widget->close();
    if (active() == widget) break;
  }
}

void Raise(QWidget& window) {
  window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
  window.show();
  window.raise();
  // A box that stands open has to be answered first, so that a window that stays on top must not
  // cover it.
  const bool on_top = window.windowFlags().testFlag(Qt::WindowStaysOnTopHint);
  if (QWidget* box = on_top ? QApplication::activeModalWidget() : nullptr) {
    box->windowHandle()->setFlag(Qt::WindowStaysOnTopHint);
    box->raise();
  } else {
    window.activateWindow();
  }
}

}  // namespace

void CenterForm(QWidget& window) {
  window.adjustSize();
  const QRect screen = window.screen()->geometry();
  window.move(screen.left() + (screen.width() - window.width()) / 2,
              screen.top() + (screen.height() - window.height()) / 2);
}

Windows::~Windows() {
  Clear();
}

void Windows::Clear() {
  for (const auto& [form, window] : std::exchange(open_, {})) delete window;
  for (const QPointer<QWidget>& window : std::exchange(dropped_, {})) delete window.data();
}

void Windows::Make(Form form, std::function<QWidget*()> maker) {
  makers_[form] = std::move(maker);
}

void Windows::MakeMain(QWidget& window, MainForm form) {
  main_ = &window;
  main_form_ = std::move(form);
  window.installEventFilter(this);
}

bool Windows::LoadMain() {
  if (ending_) return false;
  if (main_form_.Loaded()) return true;
  if (!main_form_.Load()) {
    Finish();
    return false;
  }
  // Not before its menus have their words, and with them their height.
  CenterForm(*main_);
  return true;
}

void Windows::End() {
  ending_ = true;
  Dismiss();
  UnloadMainAndEnd();
}

QWidget* Windows::Window(Form form) const {
  if (form == Form::kMain) return main_form_.Loaded() ? main_ : nullptr;
  const auto window = open_.find(form);
  return window == open_.end() ? nullptr : window->second;
}

void Windows::Show(Form form) {
  if (ending_) return;
  if (form == Form::kMain) {
    ShowMain();
  } else if (QWidget* window = Open(form)) {
    Raise(*window);
  }
}

void Windows::ShowPainted(Form form) {
  constexpr std::chrono::milliseconds kPatience{100};
  const QDeadlineTimer limit(kPatience);
  // Ends the last wait when nothing else does.
  QTimer::singleShot(kPatience, this, [] {});
  Show(form);
  DoEvents();
  const auto exposed = [&] {
    const QWidget* window = Window(form);
    return !window || !window->windowHandle() || window->windowHandle()->isExposed();
  };
  while (!exposed() && !limit.hasExpired()) {
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  }
}

void Windows::Hide(Form form) {
  // The main window stands through a reload, also while a box holds the load.
  if (QWidget* window = form == Form::kMain ? main_ : Window(form)) window->hide();
}

void Windows::Unload(Form form) {
  if (form == Form::kMain) {
    UnloadMainAndEnd();
  } else if (QWidget* window = Window(form)) {
    window->close();
    // A window that never came to the screen hears nothing of it.
    if (Window(form)) Drop(form);
  }
}

void Windows::Dismiss() {
  CloseAll(QApplication::activePopupWidget);
  CloseAll(QApplication::activeModalWidget);
}

void Windows::DoEvents() {
  QCoreApplication::processEvents();
}

bool Windows::eventFilter(QObject* watched, QEvent* event) {
  if (watched == main_) {
    if (event->type() == QEvent::WindowActivate) Activate();
    if (event->type() == QEvent::Close) UnloadMainAndEnd();
  } else if (event->type() == QEvent::Close) {
    for (const auto& [form, window] : open_) {
      if (window != watched) continue;
      Drop(form);
      break;
    }
  }
  return false;
}

void Windows::ShowMain() {
  if (!LoadMain()) return;
  Raise(*main_);
  QMetaObject::invokeMethod(
      this, [this] { Activate(); }, Qt::QueuedConnection);
}

void Windows::UnloadMainAndEnd() {
  main_form_.Unload();
  QMetaObject::invokeMethod(
      this,
      [this] {
        if (!main_form_.Loaded()) Finish();
      },
      Qt::QueuedConnection);
}

void Windows::Finish() {
  if (std::exchange(ended_, true)) return;
  ending_ = true;
  Dismiss();
  while (!open_.empty()) Unload(open_.begin()->first);
  main_->hide();
  QCoreApplication::quit();
}

void Windows::Activate() {
  main_form_.Activate();
}

QWidget* Windows::Open(Form form) {
  if (QWidget* window = Window(form)) return window;
  const auto maker = makers_.find(form);
  if (maker == makers_.end()) return nullptr;
  QWidget* window = maker->second();
  if (OnMade) OnMade(*window);
  open_[form] = window;
  window->installEventFilter(this);
  if (main_ && main_->isVisible()) {
    window->winId();
    window->windowHandle()->setTransientParent(main_->windowHandle());
  }
  return window;
}

// Deleting waits until nothing of the window can be on the stack: its handler may stand in the
// event loop of a box.
void Windows::Drop(Form form) {
  const auto window = open_.find(form);
  window->second->removeEventFilter(this);
  dropped_.emplace_back(window->second);
  open_.erase(window);
  connect(QThread::currentThread()->eventDispatcher(), &QAbstractEventDispatcher::aboutToBlock,
          this, &Windows::DeleteDropped, Qt::UniqueConnection);
}

void Windows::DeleteDropped() {
  if (QThread::currentThread()->loopLevel() > 1) return;
  disconnect(QThread::currentThread()->eventDispatcher(), &QAbstractEventDispatcher::aboutToBlock,
             this, &Windows::DeleteDropped);
  for (const QPointer<QWidget>& window : std::exchange(dropped_, {})) delete window.data();
}

}  // namespace orvane
