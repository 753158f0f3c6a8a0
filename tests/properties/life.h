// One run of the whole program, from its start to its end, on a simulated UPS and modem, with the
// rules looking on at everything that goes in and out.
#pragma once

#include <set>
#include <string>
#include <vector>

#include "frame/frm_main.h"
#include "frame/frm_setup.h"
#include "properties/rules.h"
#include "support/simulated_device.h"
#include "support/world.h"

namespace orvane::test {

// What happened in all lives, to tell whether the histories went everywhere.
struct Tally {
  Moment time{0};
  int lives = 0, counts = 0, episodes = 0, losses = 0, calls = 0, reloads = 0;
};

// Ports, disk and clock on the wall may be played with at any time.
class Life : public World {
 public:
  // Starts the program.
  Life(LocalTime start, const Wishes& wishes, const std::vector<Appointment>& schedule,
       Tally& tally);

  SimulatedUps ups{time, MSComm1};
  SimulatedModem modem{time, MSComm2};

  void Pass(Moment step);
  // Time passes on a computer that sleeps.
  void Sleep(Moment step);

  // What the user does.
  void Save(const Wishes& wishes, bool change_port);
  void Menu(const std::string& command);
  void AskForShutdown(Moment hesitation, bool yes);

  // The program ends, by the user or, after a shutdown, by the operating system. Checks what it has
  // left behind.
  void End();

  // The shutdown sequence has run.
  bool Down() const { return down_; }
  // The first rule that was broken; empty while all hold.
  const std::string& Broken() const { return broken_; }

 private:
  enum class Road { kNone, kCount, kSchedule, kMenu };

  void Check(bool holds, const std::string& what);
  void Listen();
  void OnLoad();
  void OnUpsText(std::string_view bytes);
  void OnReply(const Faults& faults);
  void OnWrite(const std::string& text);
  void OnModemWrite(const std::string& text);
  void OnPoll(const std::function<void()>& tick);
  void CheckNothingMissed();
  void LookForTheEndOfACall();
  void OnSecond(const std::function<void()>& tick);
  void OnSchedule(const std::function<void()>& tick);
  void OnDial(const std::function<void()>& tick);
  void OnSequence();
  void Expect(const std::function<void()>& act, Road road);
  void ExpectLog(int message);
  void ExpectRecord(int code);

  Wishes wishes_;
  std::vector<Appointment> schedule_;
  Tally& tally_;
  FrmMain main_{state, panel, seams};
  std::string broken_;

  // The facts since the form was loaded, and what the rules make of them.
  struct FormLife {
    std::string text;  // arrived since the last poll
    int unanswered = 0;
    Shown shown;
    CountRule count;
    Faults seen_clear{};
    Ticks dial_delay{std::chrono::seconds(5)};
    std::size_t dial_reason = 0;
    bool calling = false;  // a call goes on
    CallRule call;
  } form_;

  bool polling_ = false;              // inside a tick of the poll
  bool beginning_call_ = false;       // inside the tick that may begin a call
  bool called_ = false;               // a call has begun in it
  std::multiset<std::string> asked_;  // commands that have to go out now
  Road road_ = Road::kNone;           // the road down that stands open now
  bool down_ = false;
  int sequences_ = 0;
  bool alert_open_ = false;
  int port_ = 1;
  std::string log_, records_;
};

}  // namespace orvane::test
