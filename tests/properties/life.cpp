#include "properties/life.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include "app/messages.h"

namespace orvane::test {
namespace {

constexpr int kEnglishToChinese = 1000;
constexpr int kPollsInVain = 4;

using What = Appointment::What;

template <class... Values>
std::string Print(const char* form, Values... values) {
  char text[64];
  std::snprintf(text, sizeof text, form, values...);
  return text;
}

std::string Line(const Wishes& wishes, int port) {
  return Print("%d,%d,%d,%d,%d,2,30,%d,%d,%d%d%d,", port, wishes.delay / 60, wishes.delay % 60,
               wishes.low / 60, wishes.low % 60, wishes.shutdown_minutes, wishes.modem_port,
               wishes.dials[kMains], wishes.dials[kBatteryIsLow], wishes.dials[kUps]) +
         Print("\"%s\",%d\r\n", wishes.number.c_str(), wishes.language);
}

std::string LogLine(const LocalTime& now, std::string_view message) {
  return Print("\"\n%04d-%02d-%02d %d:%02d:%02d ", now.year, now.month, now.day, now.hour,
               now.minute, now.second) +
         std::string(message) + "\"\r\n";
}

// As the tables hold them: the week's by their day, the others one to an entry.
void Fill(const std::vector<Appointment>& schedule, State& state) {
  std::size_t entry = 0;
  for (const Appointment& due : schedule) {
    const LocalTime& at = due.at;
    auto slot = static_cast<std::size_t>(due.weekday);
    if (due.weekday == 0) {
      const bool test = due.what == What::kSelfTest;
      state.ScheduleDate[++entry + (test ? 7 : 0)] = Print("%d-%d-%d", at.year, at.month, at.day);
      slot = entry + (test ? 14 : 7);
    }
    state.ScheduleEnable[slot] = '1';
    std::string& text =
        due.what == What::kSwitchOff ? state.ScheduleOff[slot] : state.ScheduleOn[slot];
    text = Print("%d:%02d", at.hour, at.minute);
  }
}

}  // namespace

Life::Life(LocalTime start, const Wishes& wishes, const std::vector<Appointment>& schedule,
           Tally& tally)
    : wishes_(wishes), schedule_(schedule), tally_(tally) {
  ++tally_.lives;
  time.SetWall(start);
  disk.files["/prog/Orvane.ini"] = Line(wishes_, port_);
  Fill(schedule_, state);
  Listen();
  forms.Show(Form::frmMain);
}

void Life::Check(bool holds, const std::string& what) {
  if (holds || !broken_.empty()) return;
  const LocalTime now = time.Now();
  broken_ = what + ", " + std::to_string(time.Steady().count()) + " ms after the start, at" +
            LogLine(now, "").substr(1);
}

// Stands between the program and everything outside it.
void Life::Listen() {
  const auto answer_ups = MSComm1.OnSent;
  MSComm1.OnSent = [this, answer_ups](const std::string& text) {
    OnWrite(text);
    answer_ups(text);
    MSComm1.sent.clear();
  };
  const auto answer_modem = MSComm2.OnSent;
  MSComm2.OnSent = [this, answer_modem](const std::string& text) {
    OnModemWrite(text);
    answer_modem(text);
    MSComm2.sent.clear();
  };
  MSComm1.OnReceived = [this](std::string_view bytes) { OnUpsText(bytes); };
  Timer1.Around = [this](const std::function<void()>& tick) { OnPoll(tick); };
  Timer2.Around = [this](const std::function<void()>& tick) { OnSecond(tick); };
  Timer3.Around = [this](const std::function<void()>& tick) { OnSchedule(tick); };
  TimerDial.Around = [this](const std::function<void()>& tick) { OnDial(tick); };
  host.OnRun = [this] { OnSequence(); };
  forms.OnUnload = [this](Form form) {
    if (form == Form::frmMain) {
      ExpectLog(18);
      main_.Form_QueryUnload();
    }
    if (form == Form::frmAlert) main_.Alert().Form_Unload();
    if (form == Form::frmAlert) alert_open_ = false;
  };
  forms.OnShow = [this](Form form) {
    if (form == Form::frmMain) OnLoad();
    if (form == Form::frmAlert && !std::exchange(alert_open_, true)) main_.Alert().Form_Load();
  };
}

// The form begins anew, with nothing known.
void Life::OnLoad() {
  form_ = {};
  ExpectLog(11);
  Check(main_.Form_Load(), "the form loads");
  main_.Form_Activate();
}

void Life::OnUpsText(std::string_view bytes) {
  if (down_) return;
  std::string& text = form_.text;
  text += bytes;
  const bool information = text.size() >= 30 && std::count(text.begin(), text.end(), ',') == 8;
  const bool status = text.size() > 46 && text.front() == '(';
  if (!information && !status) return;
  form_.unanswered = 0;
  if (status) OnReply({text[38] == '1', text[39] == '1', text[41] == '1'});
  text.clear();
}

// An episode of a fault is told once: when a reply shows it and one before showed it clear.
void Life::OnReply(const Faults& faults) {
  form_.shown = {faults, wishes_.language};
  form_.count.Reply(time.Steady(), faults);
  LookForTheEndOfACall();
  for (std::size_t fault = 0; fault < kFaults; ++fault) {
    if (faults[fault] && wishes_.dials[fault]) {
      form_.dial_reason = fault;
      form_.dial_delay.Start(time.Steady());
    }
    const bool begins = faults[fault] && form_.seen_clear[fault];
    form_.seen_clear[fault] = !faults[fault];
    if (!begins) continue;
    ++tally_.episodes;
    ExpectLog(fault == kMains ? 25 : 29);
    ExpectRecord(fault == kMains ? 1 : 2);
  }
}

void Life::OnWrite(const std::string& text) {
  Check(!down_, "nothing is sent to the UPS after the sequence, but " + text);
  if (text == "Q1\r") return Check(polling_, "a poll out of turn");
  if (text == "MD\r") return;
  const auto asked = asked_.find(text);
  Check(asked != asked_.end(), "nobody has asked for " + text);
  if (asked != asked_.end()) asked_.erase(asked);
}

void Life::OnModemWrite(const std::string& text) {
  Check(!down_, "no call goes on after the sequence, but " + text);
  const bool begins = beginning_call_ && !called_;
  const std::string wrong = form_.call.Sent(text, begins, time.Steady());
  Check(wrong.empty(), wrong);
  if (!begins) return;
  called_ = true;
  Check(text.find(wishes_.number) == 4, "a call to another number");
  Check(MSComm2.CommPort() == wishes_.modem_port, "a call on another port");
}

void Life::OnPoll(const std::function<void()>& tick) {
  CheckNothingMissed();
  form_.text.clear();
  ++form_.unanswered;
  polling_ = true;
  tick();
  polling_ = false;
  if (form_.unanswered < kPollsInVain) return;
  form_.unanswered = 0;
  if (form_.count.ticks.Running()) ++tally_.losses;
  form_.count.ticks.Stop();
  form_.shown.faults.reset();
}

void Life::CheckNothingMissed() {
  LookForTheEndOfACall();
  Check(!form_.count.ticks.Missed(time.Steady()), "a second of the count was left out");
  Check(!form_.dial_delay.Missed(time.Steady()), "a call was left out");
}

// A fault can arm the next call only when the one that goes on is over.
void Life::LookForTheEndOfACall() {
  if (!form_.calling || dial_pass.Enabled()) return;
  form_.calling = false;
  form_.dial_delay.Stop();
}

void Life::OnSecond(const std::function<void()>& tick) {
  Check(form_.count.ticks.Take(time.Steady()), "a second of the count out of time");
  const bool over = form_.count.Tick(form_.shown, wishes_);
  Expect(tick, over ? Road::kCount : Road::kNone);
}

void Life::OnSchedule(const std::function<void()>& tick) {
  const LocalTime now = time.Now();
  const auto due = [&](What what) {
    return std::any_of(schedule_.begin(), schedule_.end(),
                       [&](const Appointment& a) { return a.what == what && a.Due(now); });
  };
  if (due(What::kSelfTest)) asked_.insert("TL\r");
  if (due(What::kSwitchOn)) {
    asked_.insert("C\r");
    ExpectLog(39);
  }
  Expect(tick, due(What::kSwitchOff) ? Road::kSchedule : Road::kNone);
}

// The call that a fault has armed goes out now, if the fault still shows and there is somebody to
// call and a port to do it on.
void Life::OnDial(const std::function<void()>& tick) {
  LookForTheEndOfACall();
  Check(form_.dial_delay.Take(time.Steady()), "a call out of time");
  const bool possible = !wishes_.number.empty() && MSComm2.present.contains(wishes_.modem_port);
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

// Runs a step of the program that has to go down by this road, or by none.
void Life::Expect(const std::function<void()>& act, Road road) {
  const int before = sequences_;
  if (road != Road::kNone) asked_.insert(wishes_.ShutdownCommand());
  road_ = road;
  act();
  Check((sequences_ > before) == (road != Road::kNone),
        road == Road::kNone ? "a sequence that nothing asked for" : "a sequence is due");
  road_ = Road::kNone;
  Check(asked_.empty() || !MSComm1.PortOpen(), "a command that was due did not go out");
  asked_.clear();
}

// The companion runs: the log is written, and the UPS has its command.
void Life::OnSequence() {
  down_ = true;
  ++sequences_;
  switch (road_) {
    case Road::kCount:
      // A line that is still in the language before a change is not known to be normal.
      Check(!form_.shown.Normal(kMains, wishes_.language) || wishes_.delay == 0,
            "a shutdown while mains is normal");
      ++tally_.counts;
      return ExpectLog(38);
    case Road::kSchedule:
      ExpectLog(40);
      return ExpectRecord(0);
    case Road::kMenu:
      return ExpectLog(22);
    case Road::kNone:
      Check(false, "a sequence out of nowhere");
  }
}

void Life::ExpectLog(int message) {
  if (disk.refuse_writes) return;
  log_ += LogLine(
      time.Now(),
      LoadResString(static_cast<std::int16_t>(message + kEnglishToChinese * wishes_.language)));
}

void Life::ExpectRecord(int code) {
  if (disk.refuse_writes) return;
  const LocalTime now = time.Now();
  records_ +=
      Print("\"\n%04d-%02d-%02d %02d %d\"\r\n", now.year, now.month, now.day, now.hour, code);
}

void Life::Pass(Moment step) {
  time.Advance(step);
  tally_.time += step;
  if (!down_) CheckNothingMissed();
}

void Life::Sleep(Moment step) {
  time.Jump(step);
  form_.count.ticks.Jump(time.Steady());
  form_.dial_delay.Jump(time.Steady());
  tally_.time += step;
}

void Life::Save(const Wishes& wishes, bool change_port) {
  FrmSetup setup(state, panel, main_, seams);
  forms.Show(Form::frmSetup);
  setup.Form_Load();
  if (change_port) {
    port_ = port_ % 4 + 1;
    ++tally_.reloads;
  }
  wishes_ = wishes;
  form_.count.left = wishes.delay;
  for (std::size_t i = 0; i < setup.OptCom.size(); ++i) {
    setup.OptCom[i] = static_cast<int>(i) == (i <= 4 ? port_ : 10 - wishes.modem_port);
  }
  const int numbers[] = {wishes.delay / 60, wishes.delay % 60, wishes.low / 60, wishes.low % 60};
  for (std::size_t i = 0; i < std::size(numbers); ++i) setup.txt[i] = std::to_string(numbers[i]);
  setup.cob = wishes.shutdown_minutes;
  for (std::size_t fault = 0; fault < kFaults; ++fault) {
    setup.Check1[fault + 1] = wishes.dials[fault];
  }
  setup.txtPhone = wishes.number;
  setup.cobLanguege = wishes.language;
  setup.cmdSave_Click();
}

void Life::Menu(const std::string& command) {
  asked_.insert(command + '\r');
  const auto click = [&] {
    if (command == "Q") main_.mnuOnOrOffBeep_Click();
    if (command == "T") main_.mnuTest10S_Click();
    if (command == "TL") main_.mnuTestToLow_Click();
    if (command == "CT") main_.mnuCancelTest_Click();
  };
  Expect(click, Road::kNone);
}

void Life::AskForShutdown(Moment hesitation, bool yes) {
  dialogs.answer = yes;
  dialogs.OnBox = [&] {
    Pass(hesitation);
    if (down_ || !yes) return;
    road_ = Road::kMenu;
    asked_.insert(wishes_.ShutdownCommand());
  };
  main_.mnuShutDown_Click();
  dialogs.OnBox = nullptr;
  Check(down_ || !yes, "the user has asked for a shutdown");
  Check(asked_.empty() || !MSComm1.PortOpen(), "the shutdown command did not go out");
  road_ = Road::kNone;
  asked_.clear();
}

void Life::End() {
  forms.Unload(Form::frmMain);
  const auto halts = std::count(events.begin(), events.end(), "ExitWindowsEx 1 0");
  Check(halts == sequences_ && sequences_ <= 1, "one sequence at most, each to its end");
  Check(Log() == log_, "the log tells this:\n" + Log() + "and should tell this:\n" + log_);
  Check(DateRec() == records_, "the records are\n" + DateRec() + "and should be\n" + records_);
}

}  // namespace orvane::test
