// The logic of the settings dialog.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "app/panel.h"
#include "app/seams.h"
#include "app/state.h"
#include "frame/frm_main.h"

namespace orvane {

class FrmSetup {
 public:
  FrmSetup(State& state, Panel& panel, FrmMain& main, const Seams& seams)
      : state_(state), panel_(panel), main_(main), seams_(seams) {}

  static constexpr int kNothingChosen = -1;
  static constexpr std::size_t kNumbers = 6;
  // How many characters each box of `txt` takes.
  static constexpr std::array<int, kNumbers> kDigits = {3, 2, 3, 2, 2, 3};

  // The controls. A value of the settings that no control can show leaves its controls unset; a
  // save then keeps the value.
  std::array<bool, 10> OptCom{};          // UPS port: 0 search, 1 to 4; modem port: 10 - index
  std::array<std::string, kNumbers> txt;  // slots 1 to 6
  int cob = kNothingChosen;               // slot 7, an index of the list
  std::array<bool, 4> Check1{};           // slot 9: 1 AC fail, 2 battery low, 3 UPS fail
  std::string txtPhone;                   // PhoneCode
  int cobLanguege = kNothingChosen;       // slot 10, an index of the list

  // Fills the controls from the settings in memory.
  void Form_Load();

  // A character typed into a box of `txt`: true when the box takes it. Digits and Backspace pass.
  static bool txt_KeyPress(int key_code) {
    return (key_code >= '0' && key_code <= '9') || key_code == '\b';
  }

  // An empty box becomes "0".
  void txt_LostFocus(std::size_t index);

  // What the box of the telephone number takes of a text: all but double quotes and line ends, with
  // which the line of the file would not read back.
  static std::string PhoneText(std::string_view typed);

  // Takes the controls over, writes the file, and brings the running program into line: a changed
  // UPS port reloads the main form, otherwise its port line and captions are written anew. A file
  // that cannot be written is told in a box at the end; the values then hold for this run.
  void cmdSave_Click();

  // Unloads the form; nothing else changes.
  void cmdExit_Click() { seams_.forms.Unload(Form::frmSetup); }

 private:
  void TakePorts();
  void TakeNumbers();
  void TakeDialling();
  void TakeLanguage();
  void RefreshMainForm();

  State& state_;
  Panel& panel_;
  FrmMain& main_;
  Seams seams_;
  std::int16_t OldUpsPort_ = 0;  // slot 0 when the form loaded
};

}  // namespace orvane
