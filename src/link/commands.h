// Every text that goes out on the UPS line.
#pragma once

#include <string_view>

#include "platform/serial_port.h"

namespace orvane {

inline constexpr std::string_view kStatusQuery = "Q1";       // answered by the status reply
inline constexpr std::string_view kInformationQuery = "MD";  // answered by the information reply
inline constexpr std::string_view kRatingQuery = "F";        // answered by the rating reply
inline constexpr std::string_view kNameQuery = "I";          // answered by the name reply
inline constexpr std::string_view kSelfTest10Seconds = "T";
inline constexpr std::string_view kSelfTestToLow = "TL";
inline constexpr std::string_view kCancelSelfTest = "CT";
inline constexpr std::string_view kToggleBeeper = "Q";
inline constexpr std::string_view kSwitchOn = "C";

// Writes the command and one carriage return in one write. False when the port did not take it;
// nothing is queued, repeated or acknowledged.
bool SendCommand(SerialPort& port, std::string_view command);

}  // namespace orvane
