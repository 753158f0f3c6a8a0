// What the program holds in memory beside the panel. One object, made once, passed by reference.
#pragma once

#include <array>
#include <cstdint>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>

#include "app/messages.h"
#include "app/panel.h"

namespace orvane {

// The faults that are logged and may ask for an emergency call.
enum class Fault { kMains, kBatteryLow, kUps };
inline constexpr Fault kFaults[] = {Fault::kMains, Fault::kBatteryLow, Fault::kUps};
template <class T>
using PerFault = EnumArray<Fault, T, std::size(kFaults)>;

// A question that is asked once while the link lives.
enum class Question { kNotAsked, kAsked, kAnswered };

// What the UPS has said of itself since its link came up.
struct UpsData {
  std::int32_t first_poll = 0;  // PollsSent when the link came up
  bool informed = false;        // an information reply has come
  Question rating = Question::kNotAsked;
  Question name = Question::kNotAsked;
  std::optional<float> rated_battery;  // nominal volts of the whole battery
  float usual_battery = 0;  // the same by the first voltage of a whole battery; 0: none came
  std::string company;      // by the name reply; empty: not told
  // Of the last status reply: volts of a cell or of the whole battery, and two bits as they came.
  std::optional<float> battery_figure;
  char test_bit = ' ';
  char beeper_bit = ' ';
};

// What the main form holds between its events. A load of the form starts it afresh.
struct MainFormState {
  std::int16_t PortTry = 0;         // index of the port in the search, port number less 1
  bool PortWasOpen = false;         // this load opened the UPS port, which may be opened again
  std::optional<Fault> DialReason;  // the fault that armed dial_timer last
  std::string RxText;               // received since the last clear (a reply, or the poll tick)
  std::int32_t PollsAnswered = 0;   // PollsSent when the last reply was consumed
  std::int32_t PollsSent = 0;       // polls since the last link loss
  std::int32_t PortPolls = 0;       // polls on a port since it was opened by the search
  UpsData Data;                     // forgotten when the link is lost
  std::int32_t AlertSeconds = 0;    // ticks of countdown_timer since mains was last seen normal
  std::int32_t AlertPeriods = 0;    // those of them that lay in the alert phase
  PerFault<bool> EventArmed;  // the fault was seen clear, so that its next appearance is logged
  // Rest tip and length of each needle, taken from the panel by the load.
  PerGauge<std::int16_t> NeedleX, NeedleY, NeedleRadius;
};

struct State {
  // Slots 0 to 10; app/settings.h names them. Written by the load and by the settings dialog.
  std::array<std::int16_t, 11> Settings{};
  std::string PhoneCode;  // the emergency number as typed
  // Nominal volts of the whole battery as the user told them; goes before what the UPS says.
  std::optional<float> BatteryVoltage;
  Language language = Language::kEnglish;
  std::string ShutdownCommand;         // UPS shutdown command without its carriage return
  std::int32_t ShutdownCountdown = 0;  // seconds left; 0 until the first tick of a count

  // The schedule tables; schedule/schedule_tables.h tells which entry each slot holds. Index 0 is
  // not in use. Written at start and by an editor's OK.
  std::array<char, 22> ScheduleEnable{};
  std::array<std::string, 22> ScheduleOn;
  std::array<std::string, 15> ScheduleOff;
  std::array<std::string, 15> ScheduleDate;

  MainFormState Main;

  // A message in the language of this moment.
  std::string_view Text(Message message) const { return MessageText(message, language); }

  // Whether a state line counts as normal, which its caption alone says, in the language of this
  // moment.
  bool IsNormal(const Label& line) const { return line.Caption() == Text(Message::kNormal); }
};

}  // namespace orvane
