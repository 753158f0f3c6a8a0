#include "frame/settings_form.h"

#include <algorithm>

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
  const auto& slots = engine_.Shown().Settings;
  ups_port = Choice(slots[kUpsPort], 0, kPorts);
  for (std::size_t i = 0; i < kNumbers; ++i) numbers[i] = std::to_string(slots[i + 1]);
  shutdown_delay = Choice(slots[kShutdownDelay], 0, kDelays - 1);
  modem_port = Choice(slots[kModemPort], 1, kPorts);
  const int conditions = slots[kDialConditions];
  const int hundreds = conditions / 100;
  const int tens = (conditions - 100 * hundreds) / 10;
  calls[Fault::kMains] = hundreds == 1;
  calls[Fault::kBatteryLow] = tens == 1;
  calls[Fault::kUps] = conditions - 100 * hundreds - 10 * tens == 1;
  phone = engine_.Shown().PhoneCode;
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
  forms_.Unload(Form::kSettings);
  if (!engine_.SaveSettings(Values())) {
    const State& state = engine_.Shown();
    dialogs_.Exclamation(state.Text(Message::kSettingsNotSaved), state.Text(Message::kWarning));
  }
}

SettingsValues SettingsForm::Values() const {
  SettingsValues values{engine_.Shown().Settings, PhoneText(phone)};
  auto& slots = values.slots;
  Take(ups_port, slots[kUpsPort]);
  Take(modem_port, slots[kModemPort]);
  // A text that is no number counts as 0.
  for (std::size_t i = 0; i < kNumbers; ++i) slots[i + 1] = ReadInteger(numbers[i]).value_or(0);
  Take(shutdown_delay, slots[kShutdownDelay]);
  slots[kDialConditions] = static_cast<std::int16_t>(
      100 * calls[Fault::kMains] + 10 * calls[Fault::kBatteryLow] + calls[Fault::kUps]);
  Take(language, slots[kLanguage]);
  return values;
}

}  // namespace orvane
