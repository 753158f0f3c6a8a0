#include "properties/life.h"

#include <algorithm>
#include <utility>

#include "app/messages.h"

namespace orvane::test {
namespace {

constexpr int kEnglishToChinese = 1000;
constexpr int kPollsInVain = 4;

using What = Appointment::What;

std::string Line(const Wishes& wishes, int port) {
  std::string line = std::to_string(port);
  for (const int slot : {wishes.delay / 60, wishes.delay % 60, wishes.low / 60, wishes.low % 60, 2,
                         30, wishes.shutdown_minutes, wishes.modem_port, wishes.dial_conditions}) {
    line += ',' + std::to_string(slot);
  }
  return line + ",\"" + wishes.number + "\"," + std::to_string(wishes.language) + "\r\n";
}

// As the tables hold them: the week's by their day, the others one to an entry.
void Fill(const std::vector<Appointment>& schedule, State& state) {
  std::size_t entry = 0;
  for (const Appointment& due : schedule) {
    const LocalTime& at = due.at;
    auto slot = static_cast<std::size_t>(due.weekday);
    if (due.weekday == 0) {
      const bool test = due.what == What::kSelfTest;
      state.ScheduleDate[++entry + (test ? 7 : 0)] =
          std::to_string(at.year) + '-' + std::to_string(at.month) + '-' + std::to_string(at.day);
      slot = entry + (test ? 14 : 7);
    }
    state.ScheduleEnable[slot] = '1';
    (due.what == What::kSwitchOff ? state.ScheduleOff[slot] : state.ScheduleOn[slot]) =
        std::to_string(at.hour) + (at.minute < 10 ? ":0" : ":") + std::to_string(at.minute);
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
  text_.clear();
  unanswered_ = 0;
  shown_ = {};
  count_ = {};
  for (Episode& episode : episodes_) episode = {};
  dial_delay_.Stop();
  calling_ = false;
  call_.Cut();
  ExpectLog(11);
  Check(main_.Form_Load(), "the form loads");
  main_.Form_Activate();
}

void Life::OnUpsText(std::string_view bytes) {
  if (down_) return;
  text_ += bytes;
  if (text_.size() >= 30 && std::count(text_.begin(), text_.end(), ',') == 8) {
    unanswered_ = 0;
    text_.clear();
  }
  if (text_.size() > 46 && text_.front() == '(') {
    OnReply(std::string_view(text_).substr(38));
    text_.clear();
  }
}

void Life::OnReply(std::string_view bits) {
  unanswered_ = 0;
  const Bits now{bits[0] == '1', bits[1] == '1', bits[3] == '1'};
  shown_.Reply(now, wishes_.language);
  count_.Reply(time.Steady(), now);
  LookForTheEndOfACall();
  OnFault(1, now.mains);
  OnFault(2, now.battery);
  OnFault(3, now.ups);
}

void Life::OnFault(int fault, bool set) {
  if (set && wishes_.Dials(fault)) {
    dial_reason_ = fault;
    dial_delay_.Start(time.Steady());
  }
  if (!episodes_[fault - 1].Begins(set)) return;
  ++tally_.episodes;
  ExpectLog(fault == 1 ? 25 : 29);
  ExpectRecord(fault == 1 ? 1 : 2);
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
  const std::string wrong = call_.Sent(text, begins, time.Steady());
  Check(wrong.empty(), wrong);
  if (!begins) return;
  called_ = true;
  Check(text.find(wishes_.number) == 4, "a call to another number");
  Check(MSComm2.CommPort() == wishes_.modem_port, "a call on another port");
}

void Life::OnPoll(const std::function<void()>& tick) {
  CheckNothingMissed();
  text_.clear();
  ++unanswered_;
  polling_ = true;
  tick();
  polling_ = false;
  if (unanswered_ < kPollsInVain) return;
  unanswered_ = 0;
  if (count_.ticks.Running()) ++tally_.losses;
  count_.ticks.Stop();
  shown_.LinkLost();
}

void Life::CheckNothingMissed() {
  LookForTheEndOfACall();
  Check(!count_.ticks.Missed(time.Steady()), "a second of the count was left out");
  Check(!dial_delay_.Missed(time.Steady()), "a call was left out");
}

// A fault can arm the next call only when the one that goes on is over.
void Life::LookForTheEndOfACall() {
  if (!calling_ || dial_pass.Enabled()) return;
  calling_ = false;
  dial_delay_.Stop();
}

void Life::OnSecond(const std::function<void()>& tick) {
  Check(count_.ticks.Take(time.Steady()), "a second of the count out of time");
  const bool over = count_.Tick(shown_, wishes_);
  if (over && shown_.Last().battery) ++tally_.shortened;
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
  Check(dial_delay_.Take(time.Steady()), "a call out of time");
  const bool possible = !wishes_.number.empty() && MSComm2.present.contains(wishes_.modem_port);
  const bool due = !calling_ && possible && !shown_.Normal(dial_reason_, wishes_.language);
  beginning_call_ = true;
  called_ = false;
  tick();
  beginning_call_ = false;
  Check(called_ == due, due ? "a call is due" : "a call that nobody needs");
  if (called_) ++tally_.calls;
  calling_ = calling_ || called_;
  if (!calling_) dial_delay_.Stop();
}

// Runs a step of the program that has to go down by this road, or by none.
void Life::Expect(const std::function<void()>& act, Road road) {
  const int before = sequences_;
  if (road != Road::kNone) asked_.insert(wishes_.ShutdownCommand() + '\r');
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
      Check(!shown_.Normal(1, wishes_.language) || wishes_.delay == 0,
            "a shutdown while mains is normal");
      ++tally_.by_count;
      return ExpectLog(38);
    case Road::kSchedule:
      ++tally_.by_schedule;
      ExpectLog(40);
      return ExpectRecord(0);
    case Road::kMenu:
      ++tally_.by_menu;
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
  if (!disk.refuse_writes) records_ += Record(time.Now(), code);
}

void Life::Pass(Moment step) {
  time.Advance(step);
  tally_.time += step;
  if (!down_) CheckNothingMissed();
}

void Life::Sleep(Moment step) {
  time.Jump(step);
  count_.ticks.Jump(time.Steady());
  dial_delay_.Jump(time.Steady());
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
  count_.Saved(wishes);
  for (std::size_t i = 0; i < setup.OptCom.size(); ++i) {
    setup.OptCom[i] = static_cast<int>(i) == (i <= 4 ? port_ : 10 - wishes.modem_port);
  }
  const int numbers[] = {wishes.delay / 60, wishes.delay % 60, wishes.low / 60, wishes.low % 60};
  for (std::size_t i = 0; i < std::size(numbers); ++i) setup.txt[i] = std::to_string(numbers[i]);
  setup.cob = wishes.shutdown_minutes;
  for (int fault = 1; fault <= 3; ++fault) {
    setup.Check1[static_cast<std::size_t>(fault)] = wishes.Dials(fault);
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
    asked_.insert(wishes_.ShutdownCommand() + '\r');
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
