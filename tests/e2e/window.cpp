// A window of a test: what it does when it is asked to close is said on its command line.
#include <QApplication>
#include <QCloseEvent>
#include <QCommandLineParser>
#include <QFile>
#include <QTimer>
#include <QWidget>
#include <cstdio>

namespace {

class Window : public QWidget {
 public:
  explicit Window(const QCommandLineParser& orders)
      : seconds_(orders.value("seconds").toInt()), held_(orders.value("hold")) {
    setWindowTitle(orders.value("title"));
    resize(200, 100);
    if (!held_.fileName().isEmpty() && !held_.open(QIODevice::ReadWrite)) qFatal("no file");
  }

 protected:
  void closeEvent(QCloseEvent* event) override {
    std::puts("asked");
    std::fflush(stdout);
    if (seconds_ != 0) event->ignore();
    if (seconds_ > 0) {
      QTimer::singleShot(seconds_ * 1000, this, [this] {
        seconds_ = 0;
        close();
      });
    } else if (seconds_ == 0 && held_.isOpen()) {
      held_.write("saved");
      held_.close();
    }
  }

 private:
  int seconds_;
  QFile held_;
};

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QCommandLineParser orders;
  orders.addOptions({{"title", "", "text"},
                     {"hold", "file held open from the start, and written at the end", "path"},
                     {"seconds", "how long saving takes; below 0: for ever", "number", "0"}});
  orders.process(application);
  Window window(orders);
  window.show();
  return QApplication::exec();
}
