#include "support/running_program.h"

#include <chrono>

namespace orvane::test {

RunningProgram::RunningProgram(Language language) {
  time.SetWall({2026, 3, 14, 15, 9, 26});
  const char* number = language == Language::kEnglish ? "0" : "1";
  disk.files["/prog/Orvane.ini"] = std::string("1,10,0,2,0,2,30,1,3,0,\"\",") + number + "\r\n";
  MSComm1.OnSent = [this](const std::string& text) {
    if (silent) return;
    if (text == "Q1\r") MSComm1.Receive(status.Text());
    // The query goes out while a reply is being decoded; its answer takes a moment.
    if (text == "MD\r") information_due_ = true;
  };
}

void RunningProgram::Start() {
  form.Form_Load();
  form.Form_Activate();
}

void RunningProgram::Poll() {
  time.Advance(std::chrono::seconds(2));
  if (!information_due_) return;
  information_due_ = false;
  MSComm1.Receive(information);
}

void RunningProgram::Polls(int count) {
  for (int i = 0; i < count; ++i) Poll();
}

}  // namespace orvane::test
