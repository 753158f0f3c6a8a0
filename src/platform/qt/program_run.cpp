#include "platform/qt/program_run.h"

#include <QCoreApplication>
#include <QProcess>
#include <QTimer>
#include <utility>

namespace orvane {

void RunProgram(const std::string& path, const std::string& argument,
                std::chrono::milliseconds limit,
                std::function<void(bool ran, const std::string& text)> on_end) {
  auto* process = new QProcess(QCoreApplication::instance());
  process->setStandardInputFile(QProcess::nullDevice());
  process->setStandardErrorFile(QProcess::nullDevice());
  QObject::connect(process, &QProcess::finished, [=](int code, QProcess::ExitStatus status) {
    process->deleteLater();
    const bool ran = status == QProcess::NormalExit && code == 0;
    on_end(ran, ran                              ? process->readAllStandardOutput().toStdString()
                : status == QProcess::NormalExit ? "exit code " + std::to_string(code)
                                                 : "crashed or hung");
  });
  QObject::connect(process, &QProcess::errorOccurred, [=](QProcess::ProcessError error) {
    if (error != QProcess::FailedToStart) return;
    process->deleteLater();
    on_end(false, process->errorString().toStdString());
  });
  QTimer::singleShot(limit, process, [process] { process->kill(); });
  process->start(QString::fromStdString(path), {QString::fromStdString(argument)});
}

}  // namespace orvane
