// The settings store: `Orvane.ini` in the program's directory, one line of twelve comma-separated
// fields known by their place alone.
#pragma once

#include <string>
#include <string_view>

#include "app/state.h"
#include "platform/disk.h"

namespace orvane {

// Slots of `Settings`.
inline constexpr std::size_t kUpsPort = 0;       // 0 search, 1 to 4
inline constexpr std::size_t kMainsMinutes = 1;  // battery life after a mains failure
inline constexpr std::size_t kMainsSeconds = 2;
inline constexpr std::size_t kLowMinutes = 3;  // battery life from battery low on
inline constexpr std::size_t kLowSeconds = 4;
inline constexpr std::size_t kWarnMinutes = 5;     // start of the warnings before the end
inline constexpr std::size_t kWarnPeriod = 6;      // seconds
inline constexpr std::size_t kShutdownDelay = 7;   // 0: 30 s; 1 to 10: minutes
inline constexpr std::size_t kModemPort = 8;       // 1 to 4
inline constexpr std::size_t kDialConditions = 9;  // decimal digits: AC fail, battery, UPS
inline constexpr std::size_t kLanguage = 10;       // 0 English, else Chinese

// Reads the fields into `Settings` and `PhoneCode`. From the first field that is missing or cannot
// be read on, everything keeps what it held. An absent file changes nothing.
void LoadSettings(const Disk& disk, const std::string& path, State& state);

// Writes the one line. False when the file could not be written; the old one then stands whole.
bool SaveSettings(Disk& disk, const std::string& path, const State& state);

// The line as it stands in the file, with its carriage return and line feed.
std::string SettingsLine(const State& state);

// The path of the file in the program's directory, which is given without a slash at the end.
std::string SettingsPath(const std::string& program_directory);

// Whether all twelve fields of a file's text can be read.
bool SettingsAreWhole(std::string_view text);

// The fields of a file's text, by the rules of LoadSettings.
void ParseSettings(std::string_view text, State& state);

// "S.5" for slot 7 of 0, else "S" and the slot in at least two digits.
std::string DeriveShutdownCommand(const State& state);

// English for slot 10 of 0, else Chinese.
Language DeriveLanguage(const State& state);

// Slot 1 x 60 + slot 2, and slot 3 x 60 + slot 4, in seconds; wide enough for every slot value.
std::int32_t MainsFailureDelay(const State& state);
std::int32_t BatteryLowDelay(const State& state);

}  // namespace orvane
