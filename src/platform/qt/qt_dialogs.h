// The message boxes on the screen. They block the program's windows, not its timers and ports.
#pragma once

#include <QMessageBox>
#include <functional>

#include "platform/dialogs.h"

namespace orvane {

class QtDialogs : public Dialogs {
 public:
  // Whether the words on the buttons are Chinese, asked for each box; English without it.
  std::function<bool()> Chinese;

  void Exclamation(std::string_view text, std::string_view title) override;
  void Plain(std::string_view text, std::string_view title) override;
  bool Ask(std::string_view text, std::string_view title) override;

 private:
  int Show(QMessageBox::Icon icon, std::string_view text, std::string_view title,
           QMessageBox::StandardButtons buttons, QMessageBox::StandardButton by_default);
};

}  // namespace orvane
