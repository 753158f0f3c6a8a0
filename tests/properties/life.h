// One run of the whole program, from its start to its end, on a simulated UPS and modem, with the
// rules looking on at everything that goes in and out.
#pragma once

#include <algorithm>
#include <cstdio>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "app/calendar.h"
#include "app/messages.h"
#include "app/settings.h"
#include "frame/main_form.h"
#include "properties/rules.h"
#include "schedule/schedule_tables.h"
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
       Tally& tally)
      : wishes_(wishes), tally_(tally) {
    ++tally_.lives;
    time.SetWall(start);
    disk.files["/prog/Orvane.ini"] = Settings();
    Save(schedule);
    Listen();
    forms.Show(Form::kMain);
  }

  SimulatedUps ups{time, ups_port};
  SimulatedModem modem{time, modem_port};

  void Pass(Moment step) {
    time.Advance(step);
    tally_.time += step;
    if (!Down()) CheckNothingMissed();
  }

  // Time passes on a computer that sleeps.
  void Sleep(Moment step) {
    time.Jump(step);
    form_.count.ticks.Jump(time.Steady());
    form_.dial_delay.Jump(time.Steady());
    tally_.time += step;
  }

  // What the user does in a window.
  void Save(const Wishes& wishes, bool change_port) {
    if (change_port) {
      port_ = port_ % 4 + 1;
      ++tally_.reloads;
    }
    wishes_ = wishes;
    form_.count.left = wishes.delay;
    State saved;
    ParseSettings(Settings(), saved);
    Check(window_.SaveSettings({saved.Settings, saved.PhoneCode}) != disk.refuse_writes, "a save");
  }

  // As the tables hold it: the week's by their day, the others one to an entry.
  void Save(const std::vector<Appointment>& schedule) {
    schedule_ = schedule;
    ScheduleEntries week, special_days, self_tests;
    std::size_t number = 0;
    for (const auto& [what, weekday, at] : schedule_) {
      ScheduleEntries& others = what == What::kSelfTest ? self_tests : special_days;
      ScheduleEntry& entry =
          weekday ? week[static_cast<std::size_t>(weekday - 1)] : others[number++];
      entry.enable = "1";
      entry.date = Print("%d-%d-%d", at.year, at.month, at.day);
      (what == What::kSwitchOff ? entry.off : entry.on) = Print("%d:%02d", at.hour, at.minute);
    }
    window_.SaveSchedule(kWeekly, week);
    window_.SaveSchedule(kSpecialDays, special_days);
    window_.SaveSchedule(kSelfTests, self_tests);
  }

  void ClearLog() {
    if (window_.Files().Remove(window_.PathOf(Journal::kLog))) log_.clear();
  }

  void Order(void (Engine::*entry)(), const std::string& command) {
    asked_.insert(command);
    (window_.*entry)();
    CloseWay();
  }

  void AskForShutdown(Moment hesitation, bool yes) {
    dialogs.answer = yes;
    dialogs.OnBox = [&] {
      Pass(hesitation);
      if (Down() || !yes) return;
      way_ = Way::kMenu;
      asked_.insert(wishes_.ShutdownCommand());
    };
    window_.AskForShutdown();
    dialogs.OnBox = nullptr;
    Check(Down() || !yes, "the user has asked for a shutdown");
    CloseWay();
  }

  // The program ends, by the user or, after a shutdown, by the operating system. Checks what it has
  // left behind.
  void End() {
    forms.Unload(Form::kMain);
    const auto halts = std::count(events.begin(), events.end(), "TakeDown");
    Check(halts == sequences_ && sequences_ <= 1, "one sequence at most, each to its end");
    Check(Log() == log_, "the log tells this:\n" + Log() + "and should tell this:\n" + log_);
    Check(DateRec() == records_, "the records are\n" + DateRec() + "and should be\n" + records_);
  }

  // The shutdown sequence has run.
  bool Down() const { return sequences_ > 0; }
  // The first rule that was broken; empty while all hold.
  const std::string& Broken() const { return broken_; }

 private:
  enum class Way { kNone, kCount, kSchedule, kMenu };
  using Act = std::function<void()>;
  using What = Appointment::What;

  template <class... Values>
  static std::string Print(const char* form, Values... values) {
    char text[64];
    std::snprintf(text, sizeof text, form, values...);
    return text;
  }
  static std::string LogLine(const LocalTime& now, const std::string& message) {
    return "\"\n" + DateText(now) + ' ' + TimeText(now) + ' ' + message + "\"\r\n";
  }

  // As their file holds them.
  std::string Settings() const {
    const Wishes& w = wishes_;
    return Print("%d,%d,%d,%d,%d,2,30,%d,%d,%d%d%d,", port_, w.delay / 60, w.delay % 60, w.low / 60,
                 w.low % 60, w.shutdown_minutes, w.modem_port, w.dials[Fault::kMains],
                 w.dials[Fault::kBatteryLow], w.dials[Fault::kUps]) +
           Print("\"%s\",%d\r\n", w.number.c_str(), static_cast<int>(w.language));
  }

  void Check(bool holds, const std::string& what) {
    if (holds || !broken_.empty()) return;
    const LocalTime now = time.Now();
    broken_ = what + ", " + std::to_string(time.Steady().count()) + " ms after the start, at" +
              LogLine(now, "").substr(1);
  }

  // Stands between the program and everything outside it.
  void Listen() {
    const auto listen = [](FakeSerialPort& port, const auto& hear) {
      port.OnSent = [&port, hear, answer = port.OnSent](const std::string& text) {
        hear(text);
        answer(text);
        port.sent.clear();
      };
    };
    listen(ups_port, [this](const std::string& text) { OnWrite(text); });
    listen(modem_port, [this](const std::string& text) { OnModemWrite(text); });
    ups_port.OnReceived = [this](std::string_view bytes) { OnUpsText(bytes); };
    poll_timer.Around = [this](const Act& tick) { OnPoll(tick); };
    countdown_timer.Around = [this](const Act& tick) { OnSecond(tick); };
    schedule_timer.Around = [this](const Act& tick) { OnSchedule(tick); };
    dial_timer.Around = [this](const Act& tick) { OnDial(tick); };
    host.OnRun = [this] { OnSequence(); };
    forms.OnUnload = [this](Form form) {
      if (form == Form::kAlert) return main_.Alert().Unload();
      if (form != Form::kMain) return;
      ExpectLog(Message::kProgramEnd);
      main_.Unload();
    };
    forms.OnLoad = [this](Form form) {
      if (form == Form::kAlert) main_.Alert().Load();
      if (form != Form::kMain) return;
      form_ = {};  // nothing is known to a new form
      ExpectLog(Message::kProgramStart);
      Check(main_.Load(), "the form loads");
      main_.Activate();
    };
  }

  // Line by line, each by itself.
  void OnUpsText(std::string_view bytes) {
    if (Down()) return;
    while (!bytes.empty()) {
      const std::size_t size = std::min(bytes.find('\r'), bytes.size() - 1) + 1;
      std::string& text = form_.text;
      text += bytes.substr(0, size);
      bytes.remove_prefix(size);
      const bool information = text.size() >= 30 && std::count(text.begin(), text.end(), ',') == 8;
      const bool status = text.size() > 46 && text.front() == '(';
      if (information || status) form_.unanswered = 0;
      if (status) OnReply({text[38] == '1', text[39] == '1', text[41] == '1'});
      if (information || status || text.back() == '\r') text.clear();
    }
  }

  // An episode of a fault is told once: when a reply shows it and one before showed it clear.
  void OnReply(const Faults& faults) {
    form_.shown = {faults, wishes_.language};
    form_.count.Reply(time.Steady(), faults);
    LookForTheEndOfACall();
    for (const Fault fault : kFaults) {
      if (faults[fault] && wishes_.dials[fault]) {
        form_.dial_reason = fault;
        form_.dial_delay.Start(time.Steady());
      }
      const bool begins = faults[fault] && form_.seen_clear[fault];
      form_.seen_clear[fault] = !faults[fault];
      if (!begins) continue;
      ++tally_.episodes;
      ExpectLog(fault == Fault::kMains ? Message::kMainsFailed : Message::kBatteryLow);
      ExpectRecord(fault == Fault::kMains ? 1 : 2);
    }
  }

  void OnWrite(const std::string& text) {
    Check(!Down(), "nothing is sent to the UPS after the sequence, but " + text);
    if (text == "Q1\r") return Check(polling_, "a poll out of turn");
    if (text == "MD\r") return;
    if (text == "F\r" || text == "I\r") {
      return Check(form_.questions.insert(text).second, "a question asked twice: " + text);
    }
    const auto asked = asked_.find(text);
    Check(asked != asked_.end(), "nobody has asked for " + text);
    if (asked != asked_.end()) asked_.erase(asked);
  }

  void OnModemWrite(const std::string& text) {
    Check(!Down(), "no call goes on after the sequence, but " + text);
    const bool begins = beginning_call_ && !called_;
    const std::string wrong = form_.call.Sent(text, begins, time.Steady());
    Check(wrong.empty(), wrong);
    if (!begins) return;
    called_ = true;
    Check(text.find(wishes_.number) == 4, "a call to another number");
    Check(modem_port.Number() == wishes_.modem_port, "a call on another port");
  }

  void OnPoll(const Act& tick) {
    CheckNothingMissed();
    form_.text.clear();
    ++form_.unanswered;
    polling_ = true;
    tick();
    polling_ = false;
    if (form_.unanswered < 4) return;
    form_.unanswered = 0;
    if (form_.count.ticks.Running()) ++tally_.losses;
    form_.count.ticks.Stop();
    form_.shown.faults.reset();
    form_.questions.clear();
  }

  void CheckNothingMissed() {
    LookForTheEndOfACall();
    Check(!form_.count.ticks.Missed(time.Steady()), "a second of the count was left out");
    Check(!form_.dial_delay.Missed(time.Steady()), "a call was left out");
  }

  // A fault can arm the next call only when the one that goes on is over.
  void LookForTheEndOfACall() {
    if (!form_.calling || modem_timer.Enabled()) return;
    form_.calling = false;
    form_.dial_delay.Stop();
  }

  void OnSecond(const Act& tick) {
    Check(form_.count.ticks.Take(time.Steady()), "a second of the count out of time");
    const bool over = form_.count.Tick(form_.shown, wishes_);
    Expect(tick, over ? Way::kCount : Way::kNone);
  }

  void OnSchedule(const Act& tick) {
    const LocalTime now = time.Now();
    const auto due = [&](What what) {
      return std::any_of(schedule_.begin(), schedule_.end(),
                         [&](const Appointment& a) { return a.what == what && a.Due(now); });
    };
    if (due(What::kSelfTest)) asked_.insert("TL\r");
    if (due(What::kSwitchOn)) {
      asked_.insert("C\r");
      ExpectLog(Message::kSwitchOnTime);
    }
    Expect(tick, due(What::kSwitchOff) ? Way::kSchedule : Way::kNone);
  }

  // The call that a fault has armed goes out now, if the fault still shows and there is somebody to
  // call and a port to do it on.
  void OnDial(const Act& tick) {
    LookForTheEndOfACall();
    Check(form_.dial_delay.Take(time.Steady()), "a call out of time");
    const bool possible =
        !wishes_.number.empty() && modem_port.present.contains(wishes_.modem_port);
    const bool due =
        !form_.calling && possible && !form_.shown.Normal(form_.dial_reason, wishes_.language);
    beginning_call_ = true;
    called_ = false;
    tick();
    beginning_call_ = false;
    Check(called_ == due, due ? "a call is due" : "a call that nobody needs");
    if (called_) ++tally_.calls;
    form_.calling = form_.calling || called_;
    if (!form_.calling) form_.dial_delay.Stop();
  }

  // The companion runs: the log is written, and the UPS has its command.
  void OnSequence() {
    ++sequences_;
    switch (way_) {
      case Way::kCount:
        // A line that is still in the language before a change is not known to be normal.
        Check(!form_.shown.Normal(Fault::kMains, wishes_.language) || wishes_.delay == 0,
              "a shutdown while mains is normal");
        ++tally_.counts;
        return ExpectLog(Message::kCountdownEnded);
      case Way::kSchedule:
        ExpectLog(Message::kSwitchOffTime);
        return ExpectRecord(0);
      case Way::kMenu:
        return ExpectLog(Message::kShutdownByMenu);
      case Way::kNone:
        Check(false, "a sequence out of nowhere");
    }
  }

  // Runs a step of the program that has to go down in this way, or not at all.
  void Expect(const Act& act, Way way) {
    const int before = sequences_;
    if (way != Way::kNone) asked_.insert(wishes_.ShutdownCommand());
    way_ = way;
    act();
    Check((sequences_ > before) == (way != Way::kNone),
          way == Way::kNone ? "a sequence that nothing asked for" : "a sequence is due");
    CloseWay();
  }

  void CloseWay() {
    way_ = Way::kNone;
    Check(asked_.empty() || !ups_port.IsOpen(), "a command that was due did not go out");
    asked_.clear();
  }

  void ExpectLog(Message message) {
    if (disk.refuse_writes) return;
    log_ += LogLine(time.Now(), std::string(MessageText(message, wishes_.language)));
  }

  void ExpectRecord(int code) {
    if (disk.refuse_writes) return;
    const LocalTime now = time.Now();
    records_ += "\"\n" + DateText(now) + Print(" %02d %d\"\r\n", now.hour, code);
  }

  Wishes wishes_;
  std::vector<Appointment> schedule_;
  Tally& tally_;
  MainForm main_{state, panel, seams};
  Engine& window_ = main_;  // what a window has of it
  std::string broken_;

  // The facts since the form was loaded, and what the rules make of them.
  struct FormLife {
    std::string text;                 // arrived since the last poll
    std::set<std::string> questions;  // asked since the link came up
    int unanswered = 0;
    Shown shown;
    CountRule count;
    Faults seen_clear{};
    Ticks dial_delay{std::chrono::seconds(5)};
    Fault dial_reason = Fault::kMains;
    bool calling = false;  // a call goes on
    CallRule call;
  } form_;

  bool polling_ = false;              // inside a tick of the poll
  bool beginning_call_ = false;       // inside the tick that may begin a call
  bool called_ = false;               // a call has begun in it
  std::multiset<std::string> asked_;  // commands that have to go out now
  Way way_ = Way::kNone;              // the way down that stands open now
  int sequences_ = 0;
  int port_ = 1;
  std::string log_, records_;
};

}  // namespace orvane::test
