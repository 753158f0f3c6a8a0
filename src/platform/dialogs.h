// The few message boxes. Each stands in front of the program's windows and holds its caller until
// it is closed; timers and ports are served meanwhile.
#pragma once

#include <string_view>

namespace orvane {

struct Dialogs {
  virtual ~Dialogs() = default;

  // Exclamation icon, one OK button.
  virtual void Exclamation(std::string_view text, std::string_view title) = 0;

  // No icon, one OK button.
  virtual void Plain(std::string_view text, std::string_view title) = 0;

  // Question icon, Yes and No, No by default. True only for Yes; a box that is closed by other
  // means, or by the end of the program, answers No.
  virtual bool Ask(std::string_view text, std::string_view title) = 0;
};

}  // namespace orvane
