#include "platform/qt/program_run.h"

namespace orvane {

ProgramRun::ProgramRun(std::chrono::milliseconds limit) {
  limit_.setSingleShot(true);
  limit_.setInterval(limit);
  QObject::connect(&limit_, &QTimer::timeout, [this] {
    if (process_) process_->kill();
  });
}

void ProgramRun::Start(const std::string& path, const std::string& argument,
                       const std::function<void(bool ran, const std::string& text)>& on_end) {
  Stop();
  process_ = std::make_unique<QProcess>();
  process_->setStandardInputFile(QProcess::nullDevice());
  process_->setStandardErrorFile(QProcess::nullDevice());
  QObject::connect(process_.get(), &QProcess::finished,
                   [this, on_end](int code, QProcess::ExitStatus status) {
                     limit_.stop();
                     if (status != QProcess::NormalExit) {
                       on_end(false, "crashed or hung");
                     } else if (code != 0) {
                       on_end(false, "exit code " + std::to_string(code));
                     } else {
                       on_end(true, process_->readAllStandardOutput().toStdString());
                     }
                   });
  // Told inside start() below, where whoever asked is not ready for an answer yet.
  QObject::connect(
      process_.get(), &QProcess::errorOccurred, process_.get(),
      [this, on_end](QProcess::ProcessError error) {
        if (error != QProcess::FailedToStart) return;
        limit_.stop();
        on_end(false, process_->errorString().toStdString());
      },
      Qt::QueuedConnection);
  limit_.start();
  process_->start(QString::fromStdString(path), {QString::fromStdString(argument)});
}

void ProgramRun::Stop() {
  limit_.stop();
  if (!process_) return;
  process_->disconnect();
  process_->kill();
  process_->waitForFinished();
  process_.reset();
}

}  // namespace orvane
