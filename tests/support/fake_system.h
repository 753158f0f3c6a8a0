// The rest of the outside world for tests: host, message boxes, windows. Each writes down what was
// asked of it; `events` of the shared journal keeps the order across all of them.
#pragma once

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "platform/dialogs.h"
#include "platform/forms.h"
#include "platform/host.h"

namespace orvane::test {

using Events = std::vector<std::string>;

class FakeHost : public Host {
 public:
  explicit FakeHost(Events& events) : events_(events) {}

  bool previous_instance = false;
  RunOutcome companion{RunOutcome::End::kExited, 0, ""};
  // The computer falls asleep, or has woken.
  std::function<void(bool asleep)> Sleep;
  bool kept_awake = false;
  bool stays_up = false;
  // Runs while the companion does.
  std::function<void()> OnRun;
  std::vector<std::string> reports;
  // The notifications that stand, and title and text of each that was shown: with ! if it is urgent
  // and with * if it stays.
  std::map<Notice, Notification> shown;
  std::vector<std::string> notified;

  std::string ProgramDirectory() const override { return "/prog"; }
  std::string ReportDirectory() const override { return "/windows"; }
  std::string CompanionPath() const override { return "/prog/exit.exe"; }
  bool IsSecondInstance() override { return previous_instance; }
  RunOutcome RunHidden(const std::string& path, std::chrono::milliseconds limit) override {
    events_.push_back("RunHidden " + path + ' ' + std::to_string(limit.count()));
    if (OnRun) OnRun();
    return companion;
  }
  void TakeDown() override { events_.push_back("TakeDown"); }
  bool StaysUp() const override { return stays_up; }
  void OnSleep(std::function<void(bool asleep)> handler) override { Sleep = std::move(handler); }
  void KeepAwake(bool on) override { kept_awake = on; }
  void ShowNotification(Notice notice, const Notification& notification) override {
    shown[notice] = notification;
    notified.push_back(notification.title + (notification.urgent ? "!" : "") +
                       (notification.stays ? "*" : "") + ": " + notification.body);
  }
  void WithdrawNotification(Notice notice) override { shown.erase(notice); }
  void Beep() override { events_.push_back("Beep"); }
  void Report(const std::string& line) override { reports.push_back(line); }

 private:
  Events& events_;
};

class FakeDialogs : public Dialogs {
 public:
  explicit FakeDialogs(Events& events) : events_(events) {}

  bool answer = false;
  // Runs while a box stands open.
  std::function<void()> OnBox;

  void Exclamation(std::string_view text, std::string_view title) override {
    Box("Exclamation", text, title);
  }
  void Plain(std::string_view text, std::string_view title) override { Box("Plain", text, title); }
  bool Ask(std::string_view text, std::string_view title) override {
    Box("Ask", text, title);
    return answer && !dismissed_;
  }
  // Takes the open boxes away, as the windows do it.
  void Dismiss() { dismissed_ = open_ > 0; }

 private:
  void Box(const char* kind, std::string_view text, std::string_view title) {
    events_.push_back(std::string(kind) + " [" + std::string(title) + "] " + std::string(text));
    if (open_ == 0) dismissed_ = false;
    ++open_;
    if (OnBox) OnBox();
    --open_;
  }

  int open_ = 0;            // boxes that stand open, one inside the other
  bool dismissed_ = false;  // they were taken away: whatever `answer` says, they answer No
  Events& events_;
};

class FakeForms : public Forms {
 public:
  FakeForms(Events& events, FakeDialogs& dialogs) : events_(events), dialogs_(dialogs) {}

  std::set<Form> open;
  // Runs inside Unload, and inside a Show of what was not open, for a test that plays the window.
  std::function<void(Form)> OnUnload;
  std::function<void(Form)> OnLoad;

  void Show(Form form) override {
    Note("Show", form);
    if (open.insert(form).second && OnLoad) OnLoad(form);
  }
  void Hide(Form form) override { Note("Hide", form); }
  void Unload(Form form) override {
    if (open.erase(form) == 0) return;
    Note("Unload", form);
    if (OnUnload) OnUnload(form);
  }
  void Dismiss() override {
    events_.push_back("Dismiss");
    dialogs_.Dismiss();
  }
  void DoEvents() override { events_.push_back("DoEvents"); }

 private:
  void Note(const char* what, Form form) {
    constexpr const char* kNames[] = {
        "main",    "splash",          "about",           "alert", "settings",
        "week",    "special_days",    "self_tests",      "log",   "day_history",
        "history", "shutdown_report", "protection_check"};
    events_.push_back(std::string(what) + ' ' + kNames[static_cast<std::size_t>(form)]);
  }

  Events& events_;
  FakeDialogs& dialogs_;
};

}  // namespace orvane::test
