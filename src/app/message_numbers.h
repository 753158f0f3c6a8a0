// The messages of the logic by what they say. The tables of the main form's captions and the day
// history know theirs by number.
#pragma once

namespace orvane::message {

// The emergency call.
inline constexpr int kModemPortInvalid = 1;
inline constexpr int kBusy = 2;
inline constexpr int kRinging = 3;
inline constexpr int kHangUp = 4;
inline constexpr int kVoidNumber = 5;
inline constexpr int kNoDialTone = 6;
inline constexpr int kNoModem = 7;
inline constexpr int kDialTimes = 8;  // the number of attempts follows
inline constexpr int kCallSucceeded = 9;
inline constexpr int kGiveUpDialling = 10;

// Start, port and end. A port that cannot be had has a text for its box and one for its line.
inline constexpr int kProgramStart = 11;
inline constexpr int kUpsOnPort = 12;  // the number of the port follows
inline constexpr int kNoPortBox = 13;
inline constexpr int kWarning = 14;
inline constexpr int kNoPortLine = 15;
inline constexpr int kFixedPortBox = 16;
inline constexpr int kFixedPortLine = 17;
inline constexpr int kProgramEnd = 18;

// States and warnings.
inline constexpr int kOverloadWarning = 23;
inline constexpr int kFail = 24;
inline constexpr int kAcFail = 25;
inline constexpr int kNormal = 26;
inline constexpr int kReady = 27;
inline constexpr int kLow = 28;
inline constexpr int kBatteryLow = 29;
inline constexpr int kByPass = 30;
inline constexpr int kOnLine = 31;
inline constexpr int kConnected = 32;
inline constexpr int kNotConnected = 33;
inline constexpr int kByPassWarning = 34;
inline constexpr int kAcFailWarning = 35;

// The way down.
inline constexpr int kAskShutdown = 20;
inline constexpr int kSavingFiles = 21;
inline constexpr int kShutdownByMenu = 22;
inline constexpr int kSecondsLeftBefore = 36;  // stands in front of the seconds
inline constexpr int kSecondsLeftBehind = 37;
inline constexpr int kCountdownEnded = 38;

// The schedule.
inline constexpr int kSwitchOnTime = 39;
inline constexpr int kSwitchOffTime = 40;

// The event log.
inline constexpr int kAskClearLog = 42;

}  // namespace orvane::message
