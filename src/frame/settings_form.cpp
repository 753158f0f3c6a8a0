#include "frame/settings_form.h"

#include <algorithm>

#include "app/captions.h"
#include "app/settings.h"
#include "link/numbers.h"

namespace orvane {
namespace {

constexpr int kPorts = 4;
constexpr int kDelays = 11;
constexpr int kLanguages = 2;

int Choice(int value, int first, int last) {
  return value >= first && value <= last ? value : SettingsForm::kNothingChosen;
}

void Take(int choice, std::int16_t& slot) {
  if (choice != SettingsForm::kNothingChosen) slot = static_cast<std::int16_t>(choice);
}

}  // namespace

void SettingsForm::Load() {
  const auto& slots = state_.Settings;
  old_ups_port_ = slots[kUpsPort];
  ups_port = Choice(old_ups_port_, 0, kPorts);
  for (std::size_t i = 0; i < kNumbers; ++i) numbers[i] = std::to_string(slots[i + 1]);
  shutdown_delay = Choice(slots[kShutdownDelay], 0, kDelays - 1);
  modem_port = Choice(slots[kModemPort], 1, kPorts);
  const int conditions = slots[kDialConditions];
  const int hundreds = conditions / 100;
  const int tens = (conditions - 100 * hundreds) / 10;
  calls[Fault::kMains] = hundreds == 1;
  calls[Fault::kBatteryLow] = tens == 1;
  calls[Fault::kUps] = conditions - 100 * hundreds - 10 * tens == 1;
  phone = state_.PhoneCode;
  language = Choice(slots[kLanguage], 0, kLanguages - 1);
}

void SettingsForm::LeaveNumber(std::size_t index) {
  if (numbers[index].empty()) numbers[index] = "0";
}

std::string SettingsForm::PhoneText(std::string_view typed) {
  std::string text(typed);
  std::erase_if(text, [](char c) { return c == '"' || c == '\r' || c == '\n'; });
  return text;
}

void SettingsForm::Save() {
  TakePorts();
  TakeNumbers();
  TakeDialling();
  TakeLanguage();
  const bool saved = main_.SaveSettings();
  state_.ShutdownCountdown = MainsFailureDelay(state_);
  if (state_.Settings[kUpsPort] != old_ups_port_) {
    seams_.forms.Unload(Form::kSettings);
    main_.Reload();
  } else {
    RefreshMainForm();
    seams_.forms.Unload(Form::kSettings);
  }
  if (!saved) {
    seams_.dialogs.Exclamation(state_.Text(Message::kSettingsNotSaved),
                               state_.Text(Message::kWarning));
  }
}

void SettingsForm::TakePorts() {
  Take(ups_port, state_.Settings[kUpsPort]);
  Take(modem_port, state_.Settings[kModemPort]);
}

// A text that is no number counts as 0.
void SettingsForm::TakeNumbers() {
  for (std::size_t i = 0; i < kNumbers; ++i) {
    state_.Settings[i + 1] = ReadInteger(numbers[i]).value_or(0);
  }
  Take(shutdown_delay, state_.Settings[kShutdownDelay]);
  state_.ShutdownCommand = DeriveShutdownCommand(state_);
}

void SettingsForm::TakeDialling() {
  state_.Settings[kDialConditions] = static_cast<std::int16_t>(
      100 * calls[Fault::kMains] + 10 * calls[Fault::kBatteryLow] + calls[Fault::kUps]);
  state_.PhoneCode = PhoneText(phone);
}

void SettingsForm::TakeLanguage() {
  Take(language, state_.Settings[kLanguage]);
  state_.language = DeriveLanguage(state_);
}

// With the port searched for, the one that the search stands on.
void SettingsForm::RefreshMainForm() {
  const int port = state_.Settings[kUpsPort];
  panel_.port_line.Caption(PortLine(state_, port != 0 ? port : state_.Main.PortTry + 1));
  SetCaptions(state_, panel_);
}

}  // namespace orvane
