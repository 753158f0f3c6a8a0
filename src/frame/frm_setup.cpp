#include "frame/frm_setup.h"

#include <algorithm>

#include "app/captions.h"
#include "app/message_numbers.h"
#include "app/settings.h"
#include "link/numbers.h"

namespace orvane {
namespace {

constexpr int kLastUpsPort = 4;     // last of the buttons of the UPS port, from 0
constexpr int kFirstModemPort = 9;  // the buttons of the modem ports, by falling index
constexpr int kLastModemPort = 6;
constexpr int kModemSum = 10;  // index of the button plus number of the port

constexpr int kDelays = 11;
constexpr int kLanguages = 2;

constexpr std::string_view kNotSavedEnglish =
    "The settings could not be saved to disk. They hold until the program ends.";
constexpr std::string_view kNotSavedChinese = "设置无法保存到磁盘，仅在本次运行期间有效。";

int Choice(int value, int choices) {
  return value >= 0 && value < choices ? value : FrmSetup::kNothingChosen;
}

}  // namespace

void FrmSetup::Form_Load() {
  const auto& slots = state_.Settings;
  OldUpsPort_ = slots[kUpsPort];
  for (int i = 0; i <= kLastUpsPort; ++i) OptCom[static_cast<std::size_t>(i)] = i == OldUpsPort_;
  for (std::size_t i = 0; i < kNumbers; ++i) txt[i] = std::to_string(slots[i + 1]);
  cob = Choice(slots[kShutdownDelay], kDelays);
  for (int i = kFirstModemPort; i >= kLastModemPort; --i) {
    OptCom[static_cast<std::size_t>(i)] = i == kModemSum - slots[kModemPort];
  }
  const int conditions = slots[kDialConditions];
  const int ac = conditions / 100;
  const int battery = (conditions - 100 * ac) / 10;
  Check1[kAcFail] = ac == 1;
  Check1[kBatteryLow] = battery == 1;
  Check1[kUpsFail] = conditions - 100 * ac - 10 * battery == 1;
  txtPhone = state_.PhoneCode;
  cobLanguege = Choice(slots[kLanguage], kLanguages);
}

void FrmSetup::txt_LostFocus(std::size_t index) {
  if (txt[index].empty()) txt[index] = "0";
}

std::string FrmSetup::PhoneText(std::string_view typed) {
  std::string text(typed);
  std::erase_if(text, [](char c) { return c == '"' || c == '\r' || c == '\n'; });
  return text;
}

void FrmSetup::cmdSave_Click() {
  TakePorts();
  TakeNumbers();
  TakeDialling();
  TakeLanguage();
  const bool saved = main_.SaveSettings();
  state_.ShutdownCountdown = MainsFailureDelay(state_);
  if (state_.Settings[kUpsPort] != OldUpsPort_) {
    seams_.forms.Unload(Form::frmSetup);
    main_.Reload();
  } else {
    RefreshMainForm();
    seams_.forms.Unload(Form::frmSetup);
  }
  if (!saved) {
    seams_.dialogs.Exclamation(state_.ResBase == 0 ? kNotSavedEnglish : kNotSavedChinese,
                               state_.Message(message::kWarning));
  }
}

void FrmSetup::TakePorts() {
  for (int i = 0; i <= kLastUpsPort; ++i) {
    if (!OptCom[static_cast<std::size_t>(i)]) continue;
    state_.Settings[kUpsPort] = static_cast<std::int16_t>(i);
    break;
  }
  for (int i = kFirstModemPort; i >= kLastModemPort; --i) {
    if (!OptCom[static_cast<std::size_t>(i)]) continue;
    state_.Settings[kModemPort] = static_cast<std::int16_t>(kModemSum - i);
    break;
  }
}

// A text that is no number counts as 0.
void FrmSetup::TakeNumbers() {
  for (std::size_t i = 0; i < kNumbers; ++i) {
    state_.Settings[i + 1] = ReadInteger(txt[i]).value_or(0);
  }
  if (cob != kNothingChosen) state_.Settings[kShutdownDelay] = static_cast<std::int16_t>(cob);
  state_.ShutdownCommand = DeriveShutdownCommand(state_);
}

void FrmSetup::TakeDialling() {
  state_.Settings[kDialConditions] = static_cast<std::int16_t>(
      100 * Check1[kAcFail] + 10 * Check1[kBatteryLow] + Check1[kUpsFail]);
  state_.PhoneCode = PhoneText(txtPhone);
}

void FrmSetup::TakeLanguage() {
  if (cobLanguege != kNothingChosen) {
    state_.Settings[kLanguage] = static_cast<std::int16_t>(cobLanguege);
  }
  state_.ResBase = DeriveResBase(state_);
}

// With the port searched for, the one that the search stands on.
void FrmSetup::RefreshMainForm() {
  const int port = state_.Settings[kUpsPort];
  panel_.Label14.Caption(PortLine(state_, port != 0 ? port : state_.Main.PortTry + 1));
  SetCaptions(state_, panel_);
}

}  // namespace orvane
