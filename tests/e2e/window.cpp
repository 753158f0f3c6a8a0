// A window of a test: what it does when it is asked to close is said on its command line.
#include <xcb/xcb.h>

#include <QApplication>
#include <QCloseEvent>
#include <QCommandLineParser>
#include <QFile>
#include <QTimer>
#include <QWidget>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

class Window : public QWidget {
 public:
  QString write;    // file written at the end, through a file held open from the start
  QString scratch;  // file written aside and put in the place of `write`.new
  int seconds = 0;  // how long saving takes
  bool refuse = false;

  void Hold() {
    if (write.isEmpty()) return;
    held_.setFileName(write);
    if (!held_.open(QIODevice::ReadWrite)) std::abort();
  }

 protected:
  void closeEvent(QCloseEvent* event) override {
    Say("asked");
    if (refuse) {
      event->ignore();
    } else if (seconds > 0 && !saved_) {
      event->ignore();
      QTimer::singleShot(seconds * 1000, this, [this] {
        Save();
        close();
      });
    } else {
      Save();
      event->accept();
    }
  }

  void showEvent(QShowEvent*) override { Say("shown"); }

 private:
  static void Say(const char* what) {
    std::puts(what);
    std::fflush(stdout);
  }

  void Save() {
    if (saved_) return;
    saved_ = true;
    if (held_.isOpen()) {
      held_.write("saved");
      held_.close();
    }
    if (!scratch.isEmpty()) {
      QFile aside(scratch);
      if (!aside.open(QIODevice::WriteOnly)) std::abort();
      aside.write("saved");
      aside.close();
      aside.rename(scratch + ".final");
    }
  }

  QFile held_;
  bool saved_ = false;
};

xcb_atom_t Atom(xcb_connection_t* display, const char* name) {
  const auto length = static_cast<std::uint16_t>(std::strlen(name));
  xcb_intern_atom_reply_t* reply =
      xcb_intern_atom_reply(display, xcb_intern_atom(display, 0, length, name), nullptr);
  const xcb_atom_t atom = reply->atom;
  std::free(reply);
  return atom;
}

// Before the window is shown.
void BeDock(const QWidget& window) {
  xcb_connection_t* display =
      qApp->nativeInterface<QNativeInterface::QX11Application>()->connection();
  const xcb_atom_t type = Atom(display, "_NET_WM_WINDOW_TYPE_DOCK");
  xcb_change_property(display, XCB_PROP_MODE_REPLACE, static_cast<xcb_window_t>(window.winId()),
                      Atom(display, "_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM, 32, 1, &type);
}

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QCommandLineParser parser;
  parser.addOptions({{"title", "", "text"},
                     {"write", "", "path"},
                     {"scratch", "", "path"},
                     {"seconds", "", "number", "0"},
                     {"refuse", ""},
                     {"dock", ""}});
  parser.process(application);
  Window window;
  window.setWindowTitle(parser.value("title"));
  window.write = parser.value("write");
  window.scratch = parser.value("scratch");
  window.seconds = parser.value("seconds").toInt();
  window.refuse = parser.isSet("refuse");
  window.resize(200, 100);
  if (parser.isSet("dock")) BeDock(window);
  window.Hold();
  window.show();
  return QApplication::exec();
}
