// The program's texts by what they say, in English and Chinese.
#pragma once

#include <cstddef>
#include <string_view>

namespace orvane {

enum class Language { kEnglish, kChinese };

enum class Message : std::size_t {
  // The emergency call.
  kModemPortInvalid,
  kBusy,
  kRinging,
  kHangUp,
  kVoidNumber,
  kNoDialTone,
  kNoModem,
  kDialTimes,  // the number of attempts follows
  kCallSucceeded,
  kGiveUpDialling,
  // Start, port and end. A port that cannot be had has a text for its box and one for its line.
  kProgramStart,
  kUpsOnPort,  // the number of the port follows
  kNoPortBox,
  kWarning,
  kNoPortLine,
  kFixedPortBox,
  kFixedPortLine,
  kProgramEnd,
  kSettingsNotSaved,
  // The way down, and the log lines that begin it. The seconds left stand between two texts.
  kAskShutdown,
  kSavingFiles,
  kShutdownByMenu,
  kSecondsLeftBefore,
  kSecondsLeftBehind,
  kCountdownEnded,
  kSwitchOnTime,
  kSwitchOffTime,
  // States and warnings.
  kOverloadWarning,
  kFail,
  kMainsFailed,
  kNormal,
  kReady,
  kLow,
  kBatteryLow,
  kBypass,
  kOnLine,
  kConnected,
  kNotConnected,
  kBypassWarning,
  kMainsWarning,
  // The event log, and who wrote the program.
  kAskClearLog,
  kCopyright,
  // Menus and their entries.
  kSystemMenu,
  kSettingsEntry,
  kBeeperEntry,
  kExitEntry,
  kScheduleMenu,
  kWeekEntry,
  kSpecialDaysEntry,
  kSelfTestsEntry,
  kAnalysisMenu,
  kLogEntry,
  kDayHistoryEntry,
  kHistoryEntry,
  kShutdownReportEntry,
  kControlMenu,
  kShortTestEntry,
  kTestToLowEntry,
  kCancelTestEntry,
  kShutdownEntry,
  kHelpMenu,
  kAboutEntry,
  // Captions of the state lines, and what the link shows before the first reply.
  kMainsCaption,
  kBatteryCaption,
  kBypassCaption,
  kUpsCaption,
  kLinkCaption,
  kNoLinkYet,
  // The UPS's own data.
  kInformationHeading,
  kBatteryCountCaption,
  kModelCaption,
  kVersionCaption,
  kRatedVoltageCaption,
  kRatedPowerCaption,
  kBatteryVoltageCaption,
  // Captions of the dials and of the bars, and the tool tip of both faces.
  kInputDial,
  kOutputDial,
  kLoadDial,
  kBatteryDial,
  kFrequencyDial,
  kTemperatureDial,
  kVoltsDial,
  kInputBar,
  kOutputBar,
  kLoadBar,
  kBatteryBar,
  kFrequencyBar,
  kTemperatureBar,
  kFaceToolTip,
  // The day history.
  kDayHistoryTitle,
  kDateCaption,
  kPreviousDay,
  kNextDay,
  kCancel,
  kScheduleLegend,
  kMainsLegend,
  kBatteryLegend,
  // Notifications of the desktop. The time stands between two texts.
  kMainsFailedTitle,
  kGoesDownBefore,
  kGoesDownBehind,
  kCountStandsStill,
  kMainsBackTitle,
  kMainsBackBody,
  kBatteryLowTitle,
  kBatteryLowBody,
  kUpsFaultTitle,
  kUpsFaultBody,
  kSilentTitle,
  kSilentBody,
  kWayDownTitle,
  kWayDownBody,
};

inline constexpr std::size_t kMessages = static_cast<std::size_t>(Message::kWayDownBody) + 1;

// The text of a message, UTF-8. Constant time.
std::string_view MessageText(Message message, Language language);

}  // namespace orvane
