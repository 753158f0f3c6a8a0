// The logic of the settings dialog.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "app/state.h"
#include "frame/engine.h"
#include "platform/dialogs.h"
#include "platform/forms.h"

namespace orvane {

class SettingsForm {
 public:
  SettingsForm(Engine& engine, Forms& forms, Dialogs& dialogs)
      : engine_(engine), forms_(forms), dialogs_(dialogs) {}

  static constexpr int kNothingChosen = -1;
  static constexpr std::size_t kNumbers = 6;
  // How many characters each box of `numbers` takes.
  static constexpr std::array<int, kNumbers> kDigits = {3, 2, 3, 2, 2, 3};

  // What the controls hold. A value of the settings that no control can show leaves its controls
  // unset; a save then keeps the value.
  int ups_port = kNothingChosen;              // 0 search, 1 to 4
  std::array<std::string, kNumbers> numbers;  // slots 1 to 6
  int shutdown_delay = kNothingChosen;        // slot 7, an index of the list
  int modem_port = kNothingChosen;            // 1 to 4
  PerFault<bool> calls;                       // the faults that ask for a call
  std::string phone;                          // PhoneCode
  int language = kNothingChosen;              // slot 10, an index of the list

  // Fills the controls from the settings in memory.
  void Load();

  // A character typed into a box of `numbers`: true when the box takes it. Digits and Backspace
  // pass.
  static bool Takes(int character) {
    return (character >= '0' && character <= '9') || character == '\b';
  }

  // The user has left a box of `numbers`: an empty one becomes "0".
  void LeaveNumber(std::size_t index);

  // What the box of the telephone number takes of a text: all but double quotes and line ends, with
  // which the line of the file would not read back.
  static std::string PhoneText(std::string_view typed);

  // Unloads the form and has the engine save what the controls hold. A file that cannot be written
  // is reported in a message box at the end; the values then hold for this run.
  void Save();

  // Unloads the form; nothing else changes.
  void Cancel() { forms_.Unload(Form::kSettings); }

 private:
  SettingsValues Values() const;

  Engine& engine_;
  Forms& forms_;
  Dialogs& dialogs_;
};

}  // namespace orvane
