// The program in virtual time with a UPS on its line, for tests and pictures of the windows.
#pragma once

#include <string>

#include "frame/main_form.h"
#include "support/status_frame.h"
#include "support/world.h"

namespace orvane::test {

struct RunningProgram : World {
  explicit RunningProgram(Language language) {
    time.SetWall({2026, 3, 14, 15, 9, 26});
    const char* number = language == Language::kEnglish ? "0" : "1";
    disk.files["/prog/Orvane.ini"] = std::string("1,10,0,2,0,2,30,1,3,0,\"\",") + number + "\r\n";
    ups_port.OnSent = [this](const std::string& text) {
      if (silent) return;
      if (text == "Q1\r") ups_port.Receive(status.Text());
      // The query goes out while a reply is being decoded; its answer takes a moment.
      if (text == "MD\r") information_due_ = true;
    };
  }

  // From the load of the form to the moment before its first poll.
  void Start() {
    form.Load();
    form.Activate();
  }

  // Runs to the next polls and through the UPS's answers.
  void Polls(int count) {
    while (count-- > 0) {
      time.Advance(std::chrono::seconds(2));
      if (information_due_) ups_port.Receive(information);
      information_due_ = false;
    }
  }
  void Poll() { Polls(1); }

  // What the UPS answers; nothing at all while it is silent.
  StatusFrame status;
  std::string information = "Aurora 1000,700,V2.14,220,0,3,36,0,0\r";
  bool silent = false;

  MainForm form{state, panel, seams};

 private:
  bool information_due_ = false;
};

}  // namespace orvane::test
