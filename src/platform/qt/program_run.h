// Another program that is run without being waited for.
#pragma once

#include <QProcess>
#include <QTimer>
#include <chrono>
#include <functional>
#include <memory>
#include <string>

namespace orvane {

class ProgramRun {
 public:
  explicit ProgramRun(std::chrono::milliseconds limit);

  // Ends what still runs, and `on_end` never comes.
  ~ProgramRun() { Stop(); }
  ProgramRun(const ProgramRun&) = delete;
  ProgramRun& operator=(const ProgramRun&) = delete;

  // Starts the program with one argument and no input; a run that is under way is ended first.
  // `on_end` runs from the event loop when the program has ended well, with what it wrote to
  // standard output; or with the reason why not, in words, at the latest after the limit, when the
  // program is ended.
  void Start(const std::string& path, const std::string& argument,
             const std::function<void(bool ran, const std::string& text)>& on_end);

 private:
  void Stop();

  std::unique_ptr<QProcess> process_;
  QTimer limit_;
};

}  // namespace orvane
