#include "protect/shutdown.h"

#include <vector>

#include "protect/watched_ups.h"

namespace orvane::test {
namespace {

class ShutdownTest : public WatchedUps {
 protected:
  ShutdownTest() {
    // The wire, in order with everything else.
    const auto answer = MSComm1.OnSent;
    MSComm1.OnSent = [this, answer](const std::string& text) {
      if (text[0] == 'S') {
        events.push_back("Output " + text);
        // The line stands, but the UPS did not wait for the disk.
        EXPECT_TRUE(disk.unsettled.contains("/prog/System.log"));
      }
      answer(text);
    };
  }

  bool AnyTimerRuns() const {
    for (const Timer* timer : std::initializer_list<const Timer*>{
             &Timer1, &Timer2, &Timer3, &tmrDate, &TimerDial, &alert_timer}) {
      if (timer->Enabled()) return true;
    }
    return false;
  }

  static inline const std::vector<std::string> kRoadDown = {
      "Output S01\r", "RunHidden /prog/exit.exe 40000", "EnableShutdownPrivilege",
      "ExitWindowsEx 1 0"};
};

TEST_F(ShutdownTest, CountdownRunsEveryStepInOrder) {
  Start({0, 10, 0, 5, 1, 30});
  forms.open.insert({Form::frmSetup, Form::frmWeek});
  NextReply(kAllWell);
  NextReply(kMainsFailed);
  host.OnRun = [this] {
    EXPECT_FALSE(AnyTimerRuns());
    EXPECT_EQ(Status(), "Saving files and exit windows...");
    EXPECT_EQ(disk.unsettled, std::set<std::string>{});
  };
  events.clear();
  Ticks(10);
  std::vector<std::string> expected = {"Show frmAlert", "Unload frmAlert", "Unload frmSetup",
                                       "Hide frmMain"};
  expected.insert(expected.end(), kRoadDown.begin(), kRoadDown.end());
  EXPECT_EQ(events, expected);
  EXPECT_TRUE(forms.open.contains(Form::frmWeek));
  EXPECT_TRUE(host.reports.empty());
  EXPECT_TRUE(MSComm1.PortOpen());
  EXPECT_EQ(Log(),
            "\"\n2001-02-16 9:05:33 Program start\"\r\n"
            "\"\n2001-02-16 9:05:37 AC fail\"\r\n"
            "\"\n2001-02-16 9:05:47 System shutdown\"\r\n");
  EXPECT_EQ(DateRec(), "\"\n2001-02-16 09 1\"\r\n");

  // Nothing runs any more, whatever a reply that was under way and a window manager bring.
  const std::size_t sent = MSComm1.sent.size();
  MSComm1.Receive(StatusFrame{.bits = kMainsFailed}.Text());
  main.Form_Activate();
  Seconds(3600);
  EXPECT_EQ(events, expected);
  EXPECT_EQ(MSComm1.sent.size(), sent);
  EXPECT_FALSE(AnyTimerRuns());
  EXPECT_EQ(Status(), "Saving files and exit windows...");

  // What the operating system's end brings.
  main.Form_QueryUnload();
  EXPECT_FALSE(MSComm1.PortOpen());
  EXPECT_TRUE(Log().ends_with(" Program end\"\r\n"));
}

TEST_F(ShutdownTest, MenuAsksFirst) {
  struct Case {
    const char* name;
    int language;
    bool answer;
    const char* box;
    const char* log;
  };
  const Case cases[] = {
      {"no", 0, false, "Ask [Orvane] Are you sure to shutdown?", nullptr},
      {"yes", 0, true, "Ask [Orvane] Are you sure to shutdown?", " Shutdown by menu\"\r\n"},
      {"yes, Chinese", 1, true, "Ask [Orvane] 是否真要退出系统并关闭计算机和UPS？",
       " 用菜单关闭了系统\"\r\n"},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.name);
    WatchedComputer computer;
    computer.Start({1, 0, 0, 30, 0, 30}, row.language);
    computer.dialogs.answer = row.answer;
    computer.NextReply(kMainsFailed);
    computer.Ticks(5);
    computer.main.mnuShutDown_Click();
    EXPECT_TRUE(computer.Happened(row.box));
    EXPECT_EQ(computer.Down(), row.answer);
    // The count goes on, or is over for good without its own line.
    computer.Seconds(20);
    EXPECT_EQ(computer.state.ShutdownCountdown, row.answer ? 55 : 35);
    if (row.log) {
      EXPECT_TRUE(computer.Log().ends_with(row.log));
    }
    EXPECT_EQ(computer.DateRec(), "");
  }
}

TEST_F(ShutdownTest, CountThatEndsUnderTheOpenBoxTakesTheBoxAway) {
  Start({0, 10, 0, 5, 0, 30});
  NextReply(kMainsFailed);
  dialogs.answer = true;
  dialogs.OnBox = [this] { Seconds(30); };
  main.mnuShutDown_Click();
  EXPECT_EQ(std::count(events.begin(), events.end(), "ExitWindowsEx 1 0"), 1);
  EXPECT_EQ(std::count(MSComm1.sent.begin(), MSComm1.sent.end(), "S01\r"), 1);
  EXPECT_TRUE(Happened("Dismiss"));
  EXPECT_TRUE(Log().ends_with(" System shutdown\"\r\n"));
}

// Whatever fails on the way, the next step runs, and standard error tells.
TEST_F(ShutdownTest, FailuresAreReportedAndTheRoadGoesOn) {
  using End = RunOutcome::End;
  struct Case {
    const char* name;
    void (*spoil)(WatchedComputer&);
    std::vector<std::string> reports;
  };
  const Case cases[] = {
      {"nothing", [](WatchedComputer&) {}, {}},
      {"port lost and back",
       [](WatchedComputer& c) { static_cast<void>(c.MSComm1.PortOpen(false)); },
       {}},
      {"port refuses the write",
       [](WatchedComputer& c) { c.MSComm1.refuse_writes = true; },
       {"orvane: the UPS did not get its shutdown command S01"}},
      {"port gone",
       [](WatchedComputer& c) { c.MSComm1.Unplug(); },
       {"orvane: the UPS did not get its shutdown command S01"}},
      {"journals",
       [](WatchedComputer& c) { c.disk.refuse_writes = true; },
       {"orvane: the event could not be written to /prog/System.log",
        "orvane: the event could not be written to /prog/DateRec.rec"}},
      {"companion missing",
       [](WatchedComputer& c) {
         c.host.companion = {End::kNotStarted, 0, "No such file or directory"};
       },
       {"orvane: the companion /prog/exit.exe could not be started: No such file or directory"}},
      {"companion crashes",
       [](WatchedComputer& c) {
         c.host.companion = {End::kCrashed, 11, ""};
       },
       {"orvane: the companion /prog/exit.exe crashed with signal 11"}},
      {"companion runs on",
       [](WatchedComputer& c) {
         c.host.companion = {End::kTimedOut, 0, ""};
       },
       {"orvane: the companion /prog/exit.exe did not end in time and was left running"}},
      {"companion fails",
       [](WatchedComputer& c) {
         c.host.companion = {End::kExited, 3, ""};
       },
       {}},
      {"end refused", [](WatchedComputer& c) { c.host.refuse_shutdown = true; }, {}},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.name);
    WatchedComputer computer;
    computer.Start({1, 0, 0, 30, 0, 30});
    row.spoil(computer);
    Shutdown shutdown(computer.state, computer.panel, computer.journals, computer.seams);
    shutdown.ShutdownSequence(40, kRecordScheduleDown);
    EXPECT_EQ(computer.host.reports, row.reports);
    const bool told = computer.MSComm1.Wire().ends_with("S01\r");
    EXPECT_EQ(told, std::string_view(row.name).find("port ") != 0 || row.reports.empty());
    if (!computer.disk.refuse_writes) {
      EXPECT_TRUE(computer.Log().ends_with(" It's time shutdown ups\"\r\n"));
      EXPECT_EQ(computer.DateRec(), "\"\n2001-02-16 09 0\"\r\n");
    }
    const std::vector<std::string> last(computer.events.end() - 3, computer.events.end());
    EXPECT_EQ(last, (std::vector<std::string>{kRoadDown.begin() + 1, kRoadDown.end()}));
  }
}

}  // namespace
}  // namespace orvane::test
