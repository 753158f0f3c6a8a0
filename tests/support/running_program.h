// The program in virtual time with a UPS on its line, for tests and pictures of the windows.
#pragma once

#include <string>

#include "frame/frm_main.h"
#include "support/status_frame.h"
#include "support/world.h"

namespace orvane::test {

struct RunningProgram : World {
  enum class Language { kEnglish, kChinese };

  explicit RunningProgram(Language language);

  // From the load of the form to the moment before its first poll.
  void Start();

  // Runs to the next poll and through the UPS's answers.
  void Poll();
  void Polls(int count);

  // What the UPS answers; nothing at all while it is silent.
  StatusFrame status;
  std::string information = "Aurora 1000,700,V2.14,220,0,3,36,0,0\r";
  bool silent = false;

  FrmMain form{state, panel, seams};

 private:
  bool information_due_ = false;
};

}  // namespace orvane::test
