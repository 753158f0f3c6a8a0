// The windows of the program by name: made when they are first asked for, shown beside each other,
// gone with their unload.
#pragma once

#include <QObject>
#include <QPointer>
#include <functional>
#include <map>
#include <vector>

#include "platform/forms.h"

class QWidget;

namespace orvane {

// Puts a window that is not shown yet in the middle of the screen.
void CenterForm(QWidget& window);

class Windows : public QObject, public Forms {
 public:
  // The main form, as far as the windows have to do with it. Whether it is loaded is its own to
  // know.
  struct MainForm {
    std::function<bool()> Load;  // false: the program has to end at once
    std::function<void()> Activate;
    std::function<void()> Unload;
    std::function<bool()> Loaded;
  };

  Windows() = default;
  ~Windows() override;

  // `maker` makes the window of `form`, each time anew; it is this object that deletes it. A window
  // has no parent: it is kept above the main window by this object. A form without a maker does
  // nothing when it is shown.
  void Make(Form form, std::function<QWidget*()> maker);

  // Runs with each window that Make's maker has made.
  std::function<void(QWidget&)> OnMade;

  // The main window, which stands through a reload of the main form.
  void MakeMain(QWidget& window, MainForm form);

  // Loads the main form without showing it. False when the program has to end instead.
  bool LoadMain();

  // What the unload of the main form does, however the program is made to end, also in the
  // middle of its load: what Dismiss closes is closed, the main form is unloaded and all windows
  // go. Nothing is shown any more after this.
  void End();

  // Deletes all windows that makers made: to be called before what they show goes.
  void Clear();

  // The end has been decided: there is no need to enter the event loop.
  bool Ended() const { return ended_; }

  // Shows the form and serves events until it is painted, which takes a window manager a moment;
  // no longer than a tenth of a second.
  void ShowPainted(Form form);

  // The window of a form that is open; null otherwise.
  QWidget* Window(Form form) const;

  // Forms. Show of the main form loads it if need be and has Activate run when the handler is over,
  // also where no window manager makes the window active.
  void Show(Form form) override;
  void Hide(Form form) override;
  void Unload(Form form) override;
  void Dismiss() override;
  void DoEvents() override;

 protected:
  // A closing by the user is an unload; an activation of the main window is passed on to the main
  // form.
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void ShowMain();
  void UnloadMainAndEnd();
  void Finish();
  void Activate();
  QWidget* Open(Form form);
  void Drop(Form form);
  void DeleteDropped();

  QWidget* main_ = nullptr;
  MainForm main_form_;
  bool ending_ = false;  // End was called
  bool ended_ = false;   // the event loop has been told to return
  std::map<Form, std::function<QWidget*()>> makers_;
  std::map<Form, QWidget*> open_;
  // Unloaded, but a handler of theirs may be waiting for a box further down the stack.
  std::vector<QPointer<QWidget>> dropped_;
};

}  // namespace orvane
