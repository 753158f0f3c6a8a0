#include "protect/shutdown.h"

#include <vector>

#include "support/watched_ups.h"

namespace orvane::test {
namespace {

const Events kEnd = {"RunHidden /prog/exit.exe 40000", "TakeDown"};

class ShutdownTest : public WatchedUps {
 protected:
  bool AnyTimerRuns() const {
    for (const Timer* timer :
         std::initializer_list<const Timer*>{&poll_timer, &countdown_timer, &schedule_timer,
                                             &clock_timer, &dial_timer, &alert_timer}) {
      if (timer->Enabled()) return true;
    }
    return false;
  }
};

// A count that ends while the question of the menu stands.
TEST_F(ShutdownTest, CountdownRunsEveryStepInOrder) {
  ups_port.OnSent = [this, answer = ups_port.OnSent](const std::string& text) {
    if (text[0] == 'S') {
      // The wire, in order with everything else.
      events.push_back("Output " + text);
      // The line stands, but the UPS did not wait for the disk.
      EXPECT_TRUE(disk.unsettled.contains("/prog/System.log"));
    }
    answer(text);
  };
  host.OnRun = [this] {
    EXPECT_FALSE(AnyTimerRuns());
    EXPECT_EQ(Status(), "Saving files and exit windows...");
    EXPECT_EQ(disk.unsettled, std::set<std::string>{});
  };
  Start({0, 10, 0, 5, 1, 30});
  forms.open.insert({Form::kSettings, Form::kWeek});
  NextReply(kAllWell);
  NextReply(kMainsFailed);
  events.clear();
  dialogs.answer = true;
  dialogs.OnBox = [this] { Seconds(30); };
  form.AskForShutdown();
  Events expected = {"Ask [Orvane] Are you sure to shutdown?",
                     "Show alert",
                     "Dismiss",
                     "Unload alert",
                     "Unload settings",
                     "Hide main",
                     "Output S01\r"};
  expected.insert(expected.end(), kEnd.begin(), kEnd.end());
  EXPECT_EQ(events, expected);
  EXPECT_TRUE(forms.open.contains(Form::kWeek));
  EXPECT_TRUE(host.reports.empty());
  EXPECT_TRUE(ups_port.IsOpen());
  EXPECT_EQ(Log(),
            "\"\n2001-02-16 9:05:33 Program start\"\r\n"
            "\"\n2001-02-16 9:05:37 AC fail\"\r\n"
            "\"\n2001-02-16 9:05:47 System shutdown\"\r\n");
  EXPECT_EQ(DateRec(), "\"\n2001-02-16 09 1\"\r\n");

  // Nothing runs any more, whatever a reply that was under way, a window manager and a user bring.
  const std::size_t sent = ups_port.sent.size();
  ups_port.Receive(status.Text());
  form.Activate();
  dialogs.OnBox = nullptr;
  form.AskForShutdown();
  expected.push_back(expected.front());
  Seconds(3600);
  EXPECT_EQ(events, expected);
  EXPECT_EQ(ups_port.sent.size(), sent);
  EXPECT_FALSE(AnyTimerRuns());
  EXPECT_EQ(Status(), "Saving files and exit windows...");

  // What the operating system's end brings.
  form.Unload();
  EXPECT_FALSE(ups_port.IsOpen());
  EXPECT_TRUE(Log().ends_with(" Program end\"\r\n"));
}

// Whatever fails on the way, the next step runs, and standard error tells.
TEST(Shutdown, FailuresAreReportedAndTheRoadGoesOn) {
  using End = RunOutcome::End;
  const std::string untold = "the UPS did not get its shutdown command S01";
  const std::string companion = "the companion /prog/exit.exe ";
  const struct {
    void (*spoil)(WatchedComputer&);
    RunOutcome companion;
    std::vector<std::string> reports;
  } cases[] = {
      // A port that was lost and is back needs no next poll.
      {[](WatchedComputer& c) { c.ups_port.Close(); }, {End::kExited, 0, ""}, {}},
      // A port that this load never had may have anything on it.
      {[](WatchedComputer& c) {
         c.ups_port.Close();
         c.ups_port.present = {};
         c.form.Reload();
         c.ups_port.present = {1};
       },
       {End::kExited, 3, ""},
       {untold}},
      {[](WatchedComputer& c) { c.ups_port.refuse_writes = true; },
       {End::kCrashed, 11, ""},
       {untold, companion + "crashed with signal 11"}},
      {[](WatchedComputer& c) { c.ups_port.Unplug(); },
       {End::kTimedOut, 0, ""},
       {untold, companion + "did not end in time and was left running"}},
      {[](WatchedComputer& c) { c.disk.refuse_writes = true; },
       {End::kNotStarted, 0, "Permission denied"},
       {"the event could not be written to /prog/System.log",
        "the event could not be written to /prog/DateRec.rec",
        companion + "could not be started: Permission denied"}},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(&row - cases);
    WatchedComputer computer;
    computer.Start({1, 0, 0, 30, 0, 30});
    computer.host.companion = row.companion;
    row.spoil(computer);
    Shutdown shutdown(computer.state, computer.panel, computer.journals, computer.seams);
    shutdown.ShutdownSequence(Message::kSwitchOffTime, RecordCode::kScheduleDown);
    EXPECT_EQ(computer.host.reports, row.reports);
    EXPECT_EQ(computer.ups_port.Wire().ends_with("S01\r"),
              row.reports.empty() || row.reports[0] != untold);
    EXPECT_EQ(Events(computer.events.end() - 2, computer.events.end()), kEnd);
  }
}

}  // namespace
}  // namespace orvane::test
