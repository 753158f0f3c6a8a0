// Is this computer protected? The points that decide it, each with what was found and what to do.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "app/state.h"
#include "platform/clock.h"
#include "platform/inspector.h"

namespace orvane {

enum class CheckPoint {
  kPort,
  kUps,
  kDelays,
  kRight,
  kBlockers,
  kCompanion,
  kFiles,
  kOthers,
  kAutostart,
  kClock,
  kLastStep,
  kSettings
};
inline constexpr std::size_t kCheckPoints = 12;

// What the user can do about a point with one click.
enum class CheckAction { kNone, kOpenSettings, kOpenSpecialDays, kOpenSelfTests, kAutostart };

struct CheckRow {
  CheckPoint point = CheckPoint::kPort;
  Grade grade = Grade::kReady;
  std::string name;
  std::string finding;  // one sentence
  std::string remedy;   // what to do; empty where nothing is to be done
  CheckAction action = CheckAction::kNone;

  bool operator==(const CheckRow&) const = default;
};

// What was found about the line to the UPS.
struct LineFindings {
  enum class Port {
    kOpen,
    kSearching,  // one of several is open, and none has brought an answer yet
    kMissing,    // none could be opened
    kLeftAlone,  // another Orvane has it
  };
  enum class Ups { kAnswers, kNotYet, kSilent };

  Port port = Port::kMissing;
  std::string port_name;
  Ups ups = Ups::kSilent;
  std::string model;  // empty: not told
};

enum class SettingsFile { kWhole, kCutShort, kMissing };

// One row for each point, in the order of CheckPoint, in the language of `state`. Outside of a
// session those of JudgeSession are missing.
std::vector<CheckRow> JudgeProtection(const State& state, const LocalTime& now,
                                      const LineFindings& line, SettingsFile file,
                                      const OutsideFindings& outside, const LastStep& last);

// The rows about the session of a user and what can be seen from there: companion, other programs,
// start with the desktop.
std::vector<CheckRow> JudgeSession(const State& state, const OutsideFindings& outside);

// `rows` with those of a session in place of their own about the same points.
std::vector<CheckRow> WithSession(std::vector<CheckRow> rows, std::vector<CheckRow> session);

std::string_view NameOf(const State& state, CheckPoint point);

// That nothing is protected, since there is no service that does it: a row in place of all others.
CheckRow ServiceMissing(const State& state);

// How a port is called: "Port 1 (/dev/ttyUSB0)". `device` may be empty.
std::string PortName(const State& state, int number, const std::string& device);

// The worst grade of all rows.
Grade WorstGrade(const std::vector<CheckRow>& rows);

// How many rows are not green.
int OpenPoints(const std::vector<CheckRow>& rows);

// "Ready", "2 points need attention": what stands beside the grade.
std::string CheckSummary(const State& state, Grade grade, int points);

}  // namespace orvane
